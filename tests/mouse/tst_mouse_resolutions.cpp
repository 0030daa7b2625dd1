#include "mouse_page.h"

/// The selectors of the channels' resolutions: chosen, filled by a report, trimmed of the custom
/// entries.
class MouseResolutionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { page_ = std::make_unique<MousePage>(); }
    void cleanup() { page_.reset(); }

    void aChosenResolutionIsSent()
    {
        page_->report();
        page_->bench.controls.setHandlersArmed(true);
        page_->resolutions[3].setCurrentIndex(2);
        page_->resolutions[0].setCurrentIndex(8);
        page_->resolutions[0].setCurrentIndex(9);
        page_->resolutions[1].setCurrentIndex(12);
        QCOMPARE(page_->bench.commands(4),
                 (QByteArrayList{"//CE 4 3\r", "//CE 1 9\r", "//CE 1 10\r", "//CE 2 13\r"}));
    }

    void aResolutionFilledInByTheProgramIsNot()
    {
        page_->report();
        page_->resolutions[0].setCurrentIndex(5);
        page_->settings.setChannelResolutions("4 3 2 13");
        QVERIFY(page_->bench.isSilent());
    }

    void customEntriesTakeTheirPositions()
    {
        page_->settings.setCustomEntry(2, "001 500 HOME", 8);
        QCOMPARE(page_->customItems(1),
                 (QStringList{QString(), QString(), QStringLiteral("HOME")}));
        page_->report();
        page_->report(); // overlapping read-backs
        for (int channel = 1; channel <= 4; ++channel) {
            QCOMPARE(page_->resolutions[channel - 1].count(), 13);
            QCOMPARE(page_->customItems(channel),
                     (QStringList{QStringLiteral("OFFICE"), QStringLiteral("DESK"),
                                  QStringLiteral("HOME"), QStringLiteral("LAB")}));
        }
    }

    void aMissingEntryIsAnEmptyItem()
    {
        page_->report();
        page_->settings.setCustomEntry(1, "0", 8);
        QCOMPARE(page_->customItems(4),
                 (QStringList{QStringLiteral("OFFICE"), QString(), QStringLiteral("HOME"),
                              QStringLiteral("LAB")}));
    }

    void trimmingTakesTheCustomEntriesAway()
    {
        page_->report();
        page_->resolutions[2].setCurrentIndex(11);
        page_->bench.controls.setHandlersArmed(true);
        page_->settings.trimCustomEntries();
        QVERIFY(page_->bench.controls.areHandlersArmed());
        for (const QComboBox &combo : page_->resolutions) {
            QCOMPARE(combo.count(), 9);
            QCOMPARE(combo.itemText(8), QStringLiteral("1920x4320"));
        }
        page_->settings.trimCustomEntries();
        QCOMPARE(page_->resolutions[0].count(), 9);
        QVERIFY(page_->bench.isSilent());
    }

    void fewerThanThirteenItemsAreNotTrimmed()
    {
        page_->settings.setCustomEntry(2, "001 500 HOME", 8);
        page_->settings.trimCustomEntries();
        QCOMPARE(page_->resolutions[0].count(), 12);
    }

    void reportedResolutionsAreSelected()
    {
        page_->report();
        page_->settings.setChannelResolutions(" 9,13;1 10");
        QCOMPARE(page_->resolutions[0].currentIndex(), 8);
        QCOMPARE(page_->resolutions[1].currentIndex(), 12);
        QCOMPARE(page_->resolutions[2].currentIndex(), 0);
        QCOMPARE(page_->resolutions[3].currentIndex(), 9);
    }

    void aResolutionWithoutAnItemLeavesItsSelector()
    {
        for (QComboBox &combo : page_->resolutions)
            combo.setCurrentIndex(4);
        page_->settings.setChannelResolutions("10 0 99999999999999999999 2");
        QCOMPARE(page_->resolutions[0].currentIndex(), 4);
        QCOMPARE(page_->resolutions[1].currentIndex(), 4);
        QCOMPARE(page_->resolutions[2].currentIndex(), 4);
        QCOMPARE(page_->resolutions[3].currentIndex(), 1);
        page_->settings.setChannelResolutions("0"); // the key was absent
        QCOMPARE(page_->resolutions[3].currentIndex(), 1);
    }

    void reportedNamesAreSelectedToo()
    {
        page_->report();
        page_->resolutions[3].setCurrentIndex(5);
        page_->settings.setChannelResolutions(" 4K desk 12 4Kx\r");
        QCOMPARE(page_->resolutions[0].currentIndex(), 1);
        QCOMPARE(page_->resolutions[1].currentIndex(), 10);
        QCOMPARE(page_->resolutions[2].currentIndex(), 11);
        QCOMPARE(page_->resolutions[3].currentIndex(), 5);
    }

private:
    std::unique_ptr<MousePage> page_;
};

QTEST_MAIN(MouseResolutionsTest)
#include "tst_mouse_resolutions.moc"
