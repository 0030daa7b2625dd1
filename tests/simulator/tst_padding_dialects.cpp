#include "settingsfile/settings_scene.h"

#include "readback/reply_application.h"
#include "simulator/switch_model.h"

namespace {

/// A switch that no two settings of are as they left the works, with speeds of every width.
SwitchState usedSwitch()
{
    SwitchState state;
    state.kmControl = 3;
    state.usbControl = 2;
    state.relativeMouse = true;
    state.cursorRolling = true;
    state.buzzer = false;
    state.layout = {5, 6, 10, 14};
    state.resolutions = {3, 10, 1, 13};
    state.custom = {{{7, 250, "OFFICE"}, {120, 80, "DESK"}, {1, 5, "HOME"}, {300, 300, "LAB"}}};
    return state;
}

QByteArray stateOf(const SwitchModel &model)
{
    return QByteArray::fromStdString(model.stateText());
}

} // namespace

/// A switch of either dialect is read, saved to a file, and the file applied to another switch: the
/// utility's own code on one side, the simulated switch on the other.
class PaddingDialectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void whatIsReadAndSavedIsTakenBack_data()
    {
        QTest::addColumn<bool>("blanks");
        QTest::addColumn<QByteArray>("lines");

        QTest::newRow("zeros") << false
                               << QByteArray(
                                      "Custom mouse movement setting 1: //MM C1 007 250 OFFICE\n"
                                      "Custom mouse movement setting 2: //MM C2 120 080 DESK\n"
                                      "Custom mouse movement setting 3: //MM C3 001 005 HOME\n"
                                      "Custom mouse movement setting 4: //MM C4 300 300 LAB\n"
                                      "Data from mouse movement label 1: 007 250 OFFICE\n"
                                      "Data from mouse movement label 2: 120 080 DESK\n"
                                      "Data from mouse movement label 3: 001 005 HOME\n"
                                      "Data from mouse movement label 4: 300 300 LAB\n");
        QTest::newRow("blanks") << true
                                << QByteArray(
                                       "Custom mouse movement setting 1: //MM C1   7 250 OFFICE\n"
                                       "Custom mouse movement setting 2: //MM C2 120  80 DESK\n"
                                       "Custom mouse movement setting 3: //MM C3   1   5 HOME\n"
                                       "Custom mouse movement setting 4: //MM C4 300 300 LAB\n"
                                       "Data from mouse movement label 1:   7 250 OFFICE\n"
                                       "Data from mouse movement label 2: 120  80 DESK\n"
                                       "Data from mouse movement label 3:   1   5 HOME\n"
                                       "Data from mouse movement label 4: 300 300 LAB\n");
    }

    void whatIsReadAndSavedIsTakenBack()
    {
        QFETCH(bool, blanks);
        QFETCH(QByteArray, lines);
        SwitchModel first;
        first.setState(usedSwitch());
        first.setFaults({.blankPadding = blanks});

        SettingsScene reader;
        read(first, reader);
        reader.saveName = reader.path("used.txt");
        reader.file.create();
        const QByteArray saved = SettingsScene::contentsOf(reader.saveName);
        QVERIFY2(saved.contains("\n" + lines), saved.constData());

        SettingsScene writer;
        writer.offer(saved);
        writer.file.load();
        SwitchModel second;
        for (const QByteArray &command : writer.bench.commands(15))
            second.receive(command);
        QCOMPARE(second.lastRejection(), std::string());
        QCOMPARE(second.obeyedCount(), 15);
        QCOMPARE(stateOf(second), stateOf(first));
        QTRY_VERIFY(writer.user.sawText(QStringLiteral("Settings file applied")));
        for (const QComboBox &resolution : writer.resolutions)
            QCOMPARE(resolution.itemText(10), QStringLiteral("DESK"));
    }

    void whatIsReadCanBeEditedAndSubmitted_data()
    {
        QTest::addColumn<bool>("blanks");
        QTest::newRow("zeros") << false;
        QTest::newRow("blanks") << true;
    }

    void whatIsReadCanBeEditedAndSubmitted()
    {
        QFETCH(bool, blanks);
        SwitchModel model;
        model.setState(usedSwitch());
        model.setFaults({.blankPadding = blanks});
        SettingsScene scene;
        read(model, scene);
        scene.setting.setCurrentIndex(1);
        scene.mouse.fillEditFields();
        QCOMPARE(scene.name.text(), QStringLiteral("DESK"));
        scene.name.setText(QStringLiteral("TABLE"));
        scene.mouse.submitCustomSetting();
        for (const QByteArray &command : scene.bench.commands(1))
            model.receive(command);
        QCOMPARE(model.lastRejection(), std::string());
        QVERIFY((model.state().custom[1] == CustomSetting{120, 80, "TABLE"}));
    }

private:
    /// Asks `model` the three questions and shows its answers in the scene's window.
    static void read(SwitchModel &model, SettingsScene &scene)
    {
        const std::string reply = joined(model.receive("//rl\r//??\r//BP\r")).toStdString();
        QLabel hotkey;
        ReplyApplication reading({&hotkey, &scene.kmControl, &scene.usbControl, &scene.activePorts,
                                  &scene.cursorRolling, &scene.mouseMode},
                                 scene.bench.controls, scene.mouse, scene.table.grid);
        reading.applyStatus(reply);
        reading.applyConfiguration(reply);
        scene.layout.load(reply);
    }
};

QTEST_MAIN(PaddingDialectsTest)
#include "tst_padding_dialects.moc"
