#include "form_window.h"

#include <QToolTip>

/// What the form says where the flow may surprise.
class MainFormTipsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNameOfACustomSetting()
    {
        const FormWindow form;
        const QString tip = form.ui.lineEdit_Mouse_Movement_Name->toolTip();
        for (const char *part : {"without blanks", "1 to 16 characters", "switch may shorten",
                                 "no more than 82 characters"})
            QVERIFY2(tip.contains(QLatin1String(part)), part);
    }

    void aLayoutIsSentInAnyCase()
    {
        const FormWindow form;
        QVERIFY(form.ui.pushButtonSubmit->toolTip().contains(
            QStringLiteral("also when its displays do not touch")));
    }

    void everyTipFitsOnTheWindow()
    {
        const FormWindow form;
        const auto widgets = form.window.findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            const QFontMetrics metrics(QToolTip::font());
            const QSize size = metrics.size(0, widget->toolTip());
            QVERIFY2(size.width() < 700, qPrintable(widget->toolTip()));
        }
    }
};

QTEST_MAIN(MainFormTipsTest)
#include "tst_main_form_tips.moc"
