#include "connection/select_connection_method_dialog.h"
#include "connection/select_km_type_dialog.h"
#include "log/event_log.h"
#include "support/dialog_recorder.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace {
QRadioButton *radio(QDialog &dialog, const char *name)
{
    return dialog.findChild<QRadioButton *>(QLatin1String(name));
}

/// Takes every choice away, which the user cannot but the dialogs guard against.
void uncheckAll(QDialog &dialog)
{
    const auto buttons = dialog.findChildren<QRadioButton *>();
    for (QRadioButton *button : buttons) {
        button->setAutoExclusive(false);
        button->setChecked(false);
    }
}

/// Whether a label of `dialog` says `text`.
bool says(const QDialog &dialog, const char *text)
{
    const auto labels = dialog.findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel *label) { return label->text() == QLatin1String(text); });
}

/// The first label or button of `dialog` whose text has no room; empty when all fit.
QString cutOff(const QDialog &dialog)
{
    const auto widgets = dialog.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!widget->isVisible() || widget->objectName().isEmpty())
            continue;
        const bool hasText = qobject_cast<const QLabel *>(widget) != nullptr ||
                             qobject_cast<const QAbstractButton *>(widget) != nullptr;
        if (hasText && (widget->width() < widget->sizeHint().width() ||
                        widget->height() < widget->sizeHint().height() ||
                        !dialog.rect().contains(widget->geometry())))
            return widget->objectName();
    }
    return {};
}
} // namespace

/// The two small questions of the connection wizard.
class ConnectionDialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { closeLog(); }

    void makingTheMethodDialogOpensTheLog()
    {
        QFile::remove(eventLogPath());
        const Select_connection_method_Dialog dialog;
        QFile log(eventLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(log.readAll(), QByteArray("Start.........\n"));
    }

    void theMethodDialogShowsItsTexts()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Norvik\u00ae Pelora Utility"));
        QVERIFY(!dialog.windowIcon().isNull());
        QCOMPARE(dialog.minimumSize(), QSize(405, 170));
        QCOMPARE(dialog.maximumSize(), QSize(405, 170));
        QVERIFY(says(dialog, "Select the method of connectivity"));
        QCOMPARE(radio(dialog, "radioButton_TCP_IP")->text(), QStringLiteral("TCP/IP (Network)"));
        QCOMPARE(radio(dialog, "radioButton_RS232")->text(), QStringLiteral("RS232 (Serial)"));
        QVERIFY(radio(dialog, "radioButton_TCP_IP")->isChecked());
        auto *button = dialog.findChild<QPushButton *>(QStringLiteral("pushButton_continue"));
        QCOMPARE(button->text(), QStringLiteral("Continue"));
        QVERIFY(button->isDefault());
        QCOMPARE(cutOff(dialog), QString());
    }

    void beforeItIsShownNothingIsChosen()
    {
        const Select_connection_method_Dialog dialog;
        QVERIFY(!dialog.isTcpIpSelected());
        QVERIFY(!dialog.isRs232Selected());
        QVERIFY(!dialog.isClosed());
    }

    void aChoiceClearsTheOtherOneAndHidesTheDialog()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        clickButton(dialog, "pushButton_continue");
        QVERIFY(dialog.isHidden());
        QVERIFY(dialog.isTcpIpSelected());
        QVERIFY(!dialog.isRs232Selected());
        QVERIFY(!dialog.isClosed());

        dialog.show();
        radio(dialog, "radioButton_RS232")->click();
        clickButton(dialog, "pushButton_continue");
        QVERIFY(dialog.isHidden());
        QVERIFY(dialog.isRs232Selected());
        QVERIFY(!dialog.isTcpIpSelected());
        QVERIFY(!dialog.isClosed());
    }

    void enterPressesContinue()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        radio(dialog, "radioButton_RS232")->setChecked(true);
        QTest::keyClick(&dialog, Qt::Key_Return);
        QVERIFY(dialog.isHidden());
        QVERIFY(dialog.isRs232Selected());
    }

    void escapeCountsAsClosing()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(dialog.isHidden());
        QVERIFY(dialog.isClosed());
        QVERIFY(!dialog.isTcpIpSelected());
        QVERIFY(!dialog.isRs232Selected());
    }

    void theCloseButtonCountsAsClosing()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        dialog.close();
        QVERIFY(dialog.isClosed());
    }

    void aSecondRunKeepsTheFirstChoiceSelected()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        radio(dialog, "radioButton_RS232")->setChecked(true);
        clickButton(dialog, "pushButton_continue");
        dialog.show();
        QVERIFY(radio(dialog, "radioButton_RS232")->isChecked());
        QVERIFY(!radio(dialog, "radioButton_TCP_IP")->isChecked());
    }

    void aClosedRunIsForgottenByTheNextOne()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        dialog.close();
        QVERIFY(dialog.isClosed());
        dialog.show();
        clickButton(dialog, "pushButton_continue");
        QVERIFY(!dialog.isClosed());
        QVERIFY(dialog.isTcpIpSelected());
    }

    void continuingWithoutAMethodIsRefused()
    {
        Select_connection_method_Dialog dialog;
        dialog.show();
        uncheckAll(dialog);
        DialogRecorder boxes;
        dialog.on_pushButton_continue_clicked();
        QCOMPARE(boxes.texts(), QStringList{QStringLiteral("Select connection method")});
        QCOMPARE(boxes.seen().first().icon, QMessageBox::Warning);
        QVERIFY(dialog.isVisible());
        QVERIFY(!dialog.isTcpIpSelected());
        QVERIFY(!dialog.isRs232Selected());
    }

    void theModelDialogShowsItsTexts()
    {
        Select_KM_type_Dialog dialog;
        dialog.show();
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Norvik\u00ae Pelora Utility"));
        QVERIFY(!dialog.windowIcon().isNull());
        QCOMPARE(dialog.minimumSize(), dialog.maximumSize());
        QVERIFY(says(dialog, "Select the KM model to be discovered"));
        QCOMPARE(radio(dialog, "radioButton_VELO")->text(), QStringLiteral("Velo"));
        QCOMPARE(radio(dialog, "radioButton_ORCA")->text(), QStringLiteral("Orca"));
        QCOMPARE(radio(dialog, "radioButton_ZEN")->text(), QStringLiteral("Zen"));
        auto *button = dialog.findChild<QPushButton *>(QStringLiteral("pushButton_Continue"));
        QCOMPARE(button->text(), QStringLiteral("Continue"));
        QVERIFY(button->isDefault());
        QCOMPARE(cutOff(dialog), QString());
    }

    void theChosenModelIsTheCheckedButtonsText_data()
    {
        QTest::addColumn<QString>("model");
        QTest::newRow("radioButton_VELO") << QStringLiteral("Velo");
        QTest::newRow("radioButton_ORCA") << QStringLiteral("Orca");
        QTest::newRow("radioButton_ZEN") << QStringLiteral("Zen");
    }

    void theChosenModelIsTheCheckedButtonsText()
    {
        QFETCH(QString, model);
        Select_KM_type_Dialog dialog;
        dialog.show();
        QCOMPARE(dialog.chosenModel(), QString());
        radio(dialog, QTest::currentDataTag())->setChecked(true);
        clickButton(dialog, "pushButton_Continue");
        QVERIFY(dialog.isHidden());
        QCOMPARE(dialog.chosenModel(), model);
    }

    void ofSeveralCheckedModelsTheFirstCounts()
    {
        Select_KM_type_Dialog dialog;
        dialog.show();
        uncheckAll(dialog);
        radio(dialog, "radioButton_ORCA")->setChecked(true);
        radio(dialog, "radioButton_ZEN")->setChecked(true);
        clickButton(dialog, "pushButton_Continue");
        QCOMPARE(dialog.chosenModel(), QStringLiteral("Orca"));
    }

    void continuingWithoutAModelIsRefused()
    {
        Select_KM_type_Dialog dialog;
        dialog.show();
        uncheckAll(dialog);
        DialogRecorder boxes;
        dialog.on_pushButton_Continue_clicked();
        QCOMPARE(boxes.texts(), QStringList{QStringLiteral("Select version of KM")});
        QCOMPARE(boxes.seen().first().icon, QMessageBox::Warning);
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.chosenModel(), QString());
    }
};

QTEST_MAIN(ConnectionDialogsTest)
#include "tst_connection_dialogs.moc"
