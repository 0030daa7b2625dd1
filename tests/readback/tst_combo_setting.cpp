#include "log/event_log.h"
#include "readback/combo_setting.h"

#include <QComboBox>
#include <QFile>
#include <QTest>

/// Selecting a combo item by the number that the switch reports.
class ComboSettingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init()
    {
        combo_ = std::make_unique<QComboBox>();
        combo_->addItems(
            {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")});
        combo_->setCurrentIndex(1);
    }

    void aNumberSelectsTheItemBeforeIt()
    {
        selectItem(*combo_, "4");
        QCOMPARE(combo_->currentIndex(), 3);
        selectItem(*combo_, "1\r");
        QCOMPARE(combo_->currentIndex(), 0);
    }

    void anEmptyValueDoesNothing()
    {
        selectItem(*combo_, "");
        QCOMPARE(combo_->currentIndex(), 1);
    }

    void aNumberWithoutAnItemLeavesTheCombo_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("zero") << QStringLiteral("0");
        QTest::newRow("beyond") << QStringLiteral("5");
        QTest::newRow("negative") << QStringLiteral("-3");
        QTest::newRow("huge") << QStringLiteral("99999999999");
        QTest::newRow("least") << QStringLiteral("-2147483648");
    }

    void aNumberWithoutAnItemLeavesTheCombo()
    {
        QFETCH(QString, value);
        selectItem(*combo_, value.toStdString());
        QCOMPARE(combo_->currentIndex(), 1);
    }

    void whatIsNoNumberIsLoggedAndLeavesTheCombo()
    {
        selectItem(*combo_, ": 3");
        QCOMPARE(combo_->currentIndex(), 1);
        QFile log(eventLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("stoi   "));
    }

private:
    std::unique_ptr<QComboBox> combo_;
};

QTEST_MAIN(ComboSettingTest)
#include "tst_combo_setting.moc"
