#include "app/screen_fit.h"
#include "form_window.h"

#include <QRegularExpression>

namespace {
int countOf(const QString &text, const char *pattern)
{
    const QRegularExpression expression(QString::fromLatin1(pattern));
    int count = 0;
    for (auto found = expression.globalMatch(text); found.hasNext(); found.next())
        ++count;
    return count;
}

QString sheetsIn(const QWidget &window)
{
    QString sheets = window.styleSheet();
    const auto widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        sheets += widget->styleSheet();
    return sheets;
}
} // namespace

/// The main window's form, made smaller for a small screen.
class FormShrinkingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsCutOff_data()
    {
        QTest::addColumn<double>("factor");
        QTest::addColumn<int>("page");
        for (const double factor : {0.99, 0.974, 0.92, 0.84, 0.778, 0.72}) {
            for (const int page : {0, 1, 2})
                QTest::addRow("%g, page %d", factor, page) << factor << page;
        }
    }

    void nothingIsCutOff()
    {
        QFETCH(double, factor);
        QFETCH(int, page);
        FormWindow form;
        shrinkForm(form.window, factor);
        form.window.setFixedSize(QSize(1305, 693) * factor);
        form.ui.label_current_Ip->setText(QStringLiteral("  IP: 192.168.100.200"));
        form.ui.label_name_of_USR->setText(QStringLiteral("  Name: USR-TCP232-410s"));
        form.ui.label_Current_Hotkey_Trigger_Data->setText(QStringLiteral("Scroll Lock"));
        form.ui.label_Custom_1->setText(QStringLiteral("100 250 OFFICE"));
        form.showPage(page);

        const QSize least = form.window.minimumSizeHint();
        QVERIFY(least.width() <= form.window.width() && least.height() <= form.window.height());
        const QRect inside = form.ui.centralwidget->rect();
        int seen = 0;
        const auto widgets = form.ui.centralwidget->findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            if (!widget->isVisible() || widget->objectName().isEmpty())
                continue;
            const QRect place(widget->mapTo(form.ui.centralwidget, QPoint()), widget->size());
            QVERIFY2(inside.contains(place), qPrintable(widget->objectName()));
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const QString text = label ? label->text() : button ? button->text() : QString();
            if (text.isEmpty())
                continue;
            const QSize needed = widget->fontMetrics().size(Qt::TextShowMnemonic, text);
            QVERIFY2(needed.width() <= widget->width() && needed.height() <= widget->height(),
                     qPrintable(widget->objectName() + QLatin1Char(' ') + text));
            ++seen;
        }
        QVERIFY2(seen >= 15, "the menu column alone has 15 of them");
    }

    void fontsAndLengthsShrink()
    {
        FormWindow form;
        const QString before = sheetsIn(form.window);
        const int fonts = countOf(before, "font-size: 14px");
        QVERIFY(fonts > 3);
        shrinkForm(form.window, 0.7);
        const QString after = sheetsIn(form.window);
        QCOMPARE(countOf(after, "font-size: 10px"), fonts);
        QCOMPARE(countOf(after, "font-size: 14px"), 0);
        QCOMPARE(form.ui.pushButton_Connection_Indicator->maximumSize(), QSize(20, 20));
    }

    void noLineGetsThinnerThanAPixel()
    {
        FormWindow form;
        const int nothings = countOf(sheetsIn(form.window), "\\b0(px|pt)");
        const int lines = countOf(sheetsIn(form.window), "\\b1px solid");
        QVERIFY(lines > 0);
        shrinkForm(form.window, 0.3);
        QCOMPARE(countOf(sheetsIn(form.window), "\\b0(px|pt)"), nothings);
        QVERIFY(countOf(sheetsIn(form.window), "\\b1px solid") >= lines);
    }

    void atFullSizeNothingIsTouched()
    {
        FormWindow untouched;
        FormWindow form;
        shrinkForm(form.window, 1);
        QCOMPARE(sheetsIn(form.window), sheetsIn(untouched.window));
        QCOMPARE(form.window.grab().toImage(), untouched.window.grab().toImage());
    }
};

QTEST_MAIN(FormShrinkingTest)
#include "tst_form_shrinking.moc"
