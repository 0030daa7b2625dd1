#include "cli/failure.h"
#include "cli/module_values.h"

#include <QTest>

namespace {
QString mistakeOf(const std::vector<std::string> &texts)
{
    try {
        moduleValuesFrom(texts);
    } catch (const UsageError &error) {
        return error.lines().join(QLatin1Char('\n'));
    }
    return {};
}

const usr_frame::ConfigurationReply stored = {QStringLiteral("00"), QStringLiteral("192.0.2.7"),
                                              QStringLiteral("192.0.2.254"),
                                              QStringLiteral("255.255.255.0")};
const ModuleCredentials admin = {QStringLiteral("admin"), QStringLiteral("secret")};
} // namespace

class ModuleValuesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNotNamedStays()
    {
        const ModuleSettings settings =
            settingsFor(moduleValuesFrom({"name=Desk 7"}), stored, admin);
        QCOMPARE(settings.ipAllocation, QStringLiteral("00"));
        QCOMPARE(settings.ip, QStringLiteral("192.0.2.7"));
        QCOMPARE(settings.subnetMask, QStringLiteral("255.255.255.0"));
        QCOMPARE(settings.gateway, QStringLiteral("192.0.2.254"));
        QCOMPARE(settings.name, std::optional(QStringLiteral("Desk 7")));
        QCOMPARE(settings.newCredentials.username, QStringLiteral("admin"));
        QCOMPARE(settings.newCredentials.password, QStringLiteral("secret"));
    }

    void anAddressMakesItStatic()
    {
        const ModuleSettings settings =
            settingsFor(moduleValuesFrom({"ip=192.0.2.9", "mask=255.255.0.0", "gateway=192.0.2.1"}),
                        stored, admin);
        QCOMPARE(settings.ipAllocation, QStringLiteral("80"));
        QCOMPARE(settings.ip, QStringLiteral("192.0.2.9"));
        QCOMPARE(settings.subnetMask, QStringLiteral("255.255.0.0"));
        QCOMPARE(settings.gateway, QStringLiteral("192.0.2.1"));
        QVERIFY(!settings.name);
    }

    void addressesAreWhatAModuleSaysOfThem()
    {
        const ModuleSettings settings = settingsFor(
            moduleValuesFrom({"ip=192.000.002.010", "mask=255.0240.000.0", "gateway=192.0.2. 254"}),
            stored, admin);
        QCOMPARE(settings.ip, QStringLiteral("192.0.2.10"));
        QCOMPARE(settings.subnetMask, QStringLiteral("255.240.0.0"));
        QCOMPARE(settings.gateway, QStringLiteral("192.0.2.254"));
    }

    void dhcpKeepsTheStaticAddressForLater()
    {
        usr_frame::ConfigurationReply now = stored;
        now.ipAllocation = QStringLiteral("80");
        const ModuleSettings settings = settingsFor(moduleValuesFrom({"dhcp"}), now, admin);
        QCOMPARE(settings.ipAllocation, QStringLiteral("00"));
        QCOMPARE(settings.ip, QStringLiteral("192.0.2.7"));
    }

    void credentialsAreReplacedOneByOne()
    {
        ModuleValues values = moduleValuesFrom({"username=root"});
        QVERIFY(values.changesCredentials());
        ModuleSettings settings = settingsFor(values, stored, admin);
        QCOMPARE(settings.newCredentials.username, QStringLiteral("root"));
        QCOMPARE(settings.newCredentials.password, QStringLiteral("secret"));
        values = {};
        values.password = QStringLiteral("new");
        settings = settingsFor(values, stored, admin);
        QCOMPARE(settings.newCredentials.username, QStringLiteral("admin"));
        QCOMPARE(settings.newCredentials.password, QStringLiteral("new"));
    }

    void whatIsNoneIsRefused_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("said");
        const auto row = [](const char *text, const char *said) {
            QTest::newRow(text) << QString::fromUtf8(text) << QString::fromLatin1(said);
        };
        row("static", "a module has no \"static\"");
        row("dns=1.1.1.1", "a module has no \"dns=1.1.1.1\"");
        row("ip", "a module has no \"ip\"");
        row("ip=192.0.2", "ip is an IPv4 address");
        row("ip=", "ip is an IPv4 address");
        row("gateway=x", "gateway is an IPv4 address");
        row("mask=255.0.255.0", "mask is a subnet mask");
        row("mask=0.0.0.0", "mask is a subnet mask");
        row("name=", "name is 1 to 16 bytes");
        row("name=seventeen-letters", "name is 1 to 16 bytes");
        row("name=ÄÖÜÄÖÜÄÖÜ", "name is 1 to 16 bytes");
        row("name=a\nb", "name is 1 to 16 bytes");
        row("username=longuser", "username is 1 to 6 bytes");
        row("password=secret", "no password is taken from the command line");
    }

    void whatIsNoneIsRefused()
    {
        QFETCH(QString, text);
        QFETCH(QString, said);
        const QString mistake = mistakeOf({text.toStdString()});
        QVERIFY2(mistake.contains(said), qPrintable(mistake));
        QVERIFY(!mistake.contains(QStringLiteral("secret")));
    }

    void whatExcludesEachOtherIsRefused()
    {
        QCOMPARE(mistakeOf({"dhcp", "ip=192.0.2.7"}),
                 QStringLiteral("dhcp and addresses exclude each other"));
        QCOMPARE(mistakeOf({"ip=192.0.2.7", "ip=192.0.2.8"}), QStringLiteral("ip is given twice"));
    }

    void aPasswordHasOneToSixBytes()
    {
        requirePassword(QStringLiteral("secret"));
        QVERIFY_EXCEPTION_THROWN(requirePassword(QString()), UsageError);
        QVERIFY_EXCEPTION_THROWN(requirePassword(QStringLiteral("secret7")), UsageError);
    }
};

QTEST_GUILESS_MAIN(ModuleValuesTest)
#include "tst_module_values.moc"
