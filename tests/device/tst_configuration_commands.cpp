#include "device/configuration_commands.h"

#include "device/configuration_examples.h"

#include <QTest>

namespace {
QStringList texts(const std::vector<SettingCommand> &commands)
{
    QStringList lines;
    for (const SettingCommand &command : commands)
        lines.append(QString::fromStdString(command.text));
    return lines;
}

QStringList list(const char *commands)
{
    return QString::fromUtf8(commands).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

std::vector<SettingCommand> commandsBetween(const SwitchConfiguration &from,
                                            const SwitchConfiguration &to,
                                            const WrittenCommands &asWritten = {})
{
    return commandsFor(keysOf(differences(from, to)), from, to, asWritten);
}

SwitchConfiguration withPorts(std::optional<int> ports)
{
    SwitchConfiguration configuration;
    configuration.activePorts = ports;
    return configuration;
}

SwitchConfiguration withLayoutAndPorts(std::optional<int> ports)
{
    SwitchConfiguration configuration = withPorts(ports);
    configuration.layout = DisplayLayout{{{0, 0}, {0, 1}, {1, 0}, {1, 1}}};
    return configuration;
}
} // namespace

/// The commands that lead from one configuration to another, typed by hand.
class ConfigurationCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingHasItsCommand()
    {
        const SwitchConfiguration configuration = exampleConfiguration();
        QStringList commands;
        for (const SettingKey key : allSettingKeys())
            commands.append(QString::fromStdString(settingCommand(configuration, key)));
        QCOMPARE(commands.join(QLatin1Char('|')),
                 QStringLiteral("//c2|//u3|//D3|//o1|//B1|//km|//CE 1 1|//CE 2 10|//CE 3 3|"
                                "//CE 4 13|//MM C1 100 250 OFFICE |//MM C2 120 80 DESK |"
                                "//MM C3 1 500 HOME |//MM C4 300 300 LAB |"
                                "//FF01B05FF02B06FF03B10FF04B14|"));
        for (const SettingKey key : allSettingKeys())
            QCOMPARE(settingCommand({}, key), std::string());
    }

    void theOtherValues()
    {
        SwitchConfiguration configuration;
        configuration.cursorRolling = false;
        configuration.buzzerOn = false;
        configuration.relativeMouse = false;
        QCOMPARE(settingCommand(configuration, SettingKey::CursorRolling), std::string("//o0"));
        QCOMPARE(settingCommand(configuration, SettingKey::Buzzer), std::string("//B0"));
        QCOMPARE(settingCommand(configuration, SettingKey::MouseMode), std::string("//ks"));
    }

    void allOfThemInTheOrderOfASettingsFile()
    {
        QCOMPARE(texts(commandsBetween(withPorts(3), exampleConfiguration())),
                 list("//c2|//MM C1 100 250 OFFICE |//MM C2 120 80 DESK |//MM C3 1 500 HOME |"
                      "//MM C4 300 300 LAB |//CE 1 1|//CE 2 10|//CE 3 3|//CE 4 13|"
                      "//u3|//o1|//D4|//FF01B05FF02B06FF03B10FF04B14|//D3|//B1|//km"));
    }

    void theHalves()
    {
        QStringList first;
        for (const SettingKey key : allSettingKeys()) {
            if (!isInSecondHalf(key))
                first.append(settingName(key));
        }
        QCOMPARE(first.join(QLatin1Char(' ')),
                 QStringLiteral("km-control resolution.1 resolution.2 resolution.3 resolution.4 "
                                "custom.1 custom.2 custom.3 custom.4"));
    }

    void onlyWhatDiffersIsSent()
    {
        SwitchConfiguration to = exampleConfiguration();
        QCOMPARE(texts(commandsBetween(exampleConfiguration(), to)), QStringList());
        to.usbControl = 1;
        to.resolutions[2] = 4;
        QCOMPARE(texts(commandsBetween(exampleConfiguration(), to)), list("//CE 3 4|//u1"));
    }

    void layoutsAndPorts_data()
    {
        QTest::addColumn<int>("now");    // 0: not known
        QTest::addColumn<int>("wanted"); // 0: not among the keys
        QTest::addColumn<QString>("commands");
        const auto row = [](const char *title, int now, int wanted, const char *commands) {
            QTest::newRow(title) << now << wanted << QString::fromUtf8(commands);
        };
        constexpr auto alone = "//FF01B01FF02B02FF03B05FF04B06";
        row("all active", 4, 0, alone);
        row("three active", 3, 0, "//D4|//FF01B01FF02B02FF03B05FF04B06|//D3");
        row("two active", 2, 0, "//D4|//FF01B01FF02B02FF03B05FF04B06|//D2");
        row("nobody knows", 0, 0, alone);
        row("two, four wanted", 2, 4, "//D4|//FF01B01FF02B02FF03B05FF04B06");
        row("two, three wanted", 2, 3, "//D4|//FF01B01FF02B02FF03B05FF04B06|//D3");
        row("four, two wanted", 4, 2, "//FF01B01FF02B02FF03B05FF04B06|//D2");
        row("four, four sent anyway", 4, 4, "//D4|//FF01B01FF02B02FF03B05FF04B06");
        row("three, three sent anyway", 3, 3, "//D4|//FF01B01FF02B02FF03B05FF04B06|//D3");
        row("not known, four wanted", 0, 4, "//D4|//FF01B01FF02B02FF03B05FF04B06");
        row("not known, two wanted", 0, 2, "//D4|//FF01B01FF02B02FF03B05FF04B06|//D2");
    }

    void layoutsAndPorts()
    {
        QFETCH(int, now);
        QFETCH(int, wanted);
        QFETCH(QString, commands);
        std::vector<SettingKey> keys = {SettingKey::Layout};
        if (wanted != 0)
            keys.push_back(SettingKey::ActivePorts);
        const auto known = [](int ports) {
            return ports == 0 ? std::nullopt : std::optional(ports);
        };
        QCOMPARE(texts(commandsFor(keys, withPorts(known(now)), withLayoutAndPorts(known(wanted)))),
                 commands.split(QLatin1Char('|')));
    }

    void aPortLimitAloneIsSentAtItsPlace()
    {
        SwitchConfiguration to = withPorts(2);
        to.usbControl = 2;
        to.cursorRolling = false;
        QCOMPARE(texts(commandsBetween(withPorts(4), to)), list("//u2|//D2|//o0"));
    }

    void theNumberOfPortsGoesBackAlsoWhereOnlyTheLayoutDiffers()
    {
        SwitchConfiguration to = exampleConfiguration();
        to.layout = DisplayLayout{{{0, 0}, {0, 1}, {0, 2}, {0, 3}}};
        const std::vector<SettingCommand> commands = commandsBetween(exampleConfiguration(), to);
        QCOMPARE(texts(commands), list("//D4|//FF01B01FF02B02FF03B03FF04B04|//D3"));
        for (const SettingCommand &command : commands)
            QCOMPARE(command.key, SettingKey::Layout);
    }

    void whatIsWrittenIsSentAsItStands()
    {
        SwitchConfiguration to = exampleConfiguration();
        to.custom[1] = MouseMovement{7, 8, QStringLiteral("DESK")};
        to.activePorts = 2;
        to.layout = DisplayLayout{{{0, 0}, {0, 1}, {0, 2}, {0, 3}}};
        const WrittenCommands written = {{customSetting(2), "//MM C2 007 008 DESK"},
                                         {SettingKey::ActivePorts, "//D2"},
                                         {SettingKey::Layout, "//FF04B04FF03B03FF02B02FF01B01"},
                                         {SettingKey::Buzzer, "//B0"}};
        QCOMPARE(texts(commandsBetween(exampleConfiguration(), to, written)),
                 list("//MM C2 007 008 DESK|//D4|//FF04B04FF03B03FF02B02FF01B01|//D2"));
    }

    void aKeyWithoutAValueIsLeftOut()
    {
        QCOMPARE(texts(commandsFor({SettingKey::Buzzer, SettingKey::Layout, SettingKey::Hotkey,
                                    SettingKey::ActivePorts},
                                   exampleConfiguration(), {})),
                 QStringList());
    }
};

QTEST_GUILESS_MAIN(ConfigurationCommandsTest)
#include "tst_configuration_commands.moc"
