#include "support/serial_window.h"

#include <QStackedWidget>
#include <QTest>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

/// The mouse wheel over the main window's selectors.
class SelectorWheelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        s_ = std::make_unique<SerialWindow>();
        QVERIFY(s_->startAndRead());
        s_->window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(s_->window.get()));
        s_->combo("comboBox_SelectPort")->addItem(QStringLiteral("nowhere")); // to turn to
        s_->device->forget();
    }
    void cleanup() { s_.reset(); }

    void theTableHasAllSelectors() { QCOMPARE(s_->window->findChildren<QComboBox *>().size(), 11); }

    void aSelectorOnTheWayPastStaysAsItIs_data() { everySelector(); }
    void aSelectorOnTheWayPastStaysAsItIs()
    {
        QFETCH(QString, name);
        QComboBox *selector = shown(name);
        s_->window->setFocus();
        for (int i = 0; i < 3; ++i) {
            const int before = selector->currentIndex();
            QVERIFY(!turnWheelOver(*selector, before == 0 ? -120 : 120));
            QCOMPARE(selector->currentIndex(), before);
            QVERIFY(!selector->hasFocus());
        }
        QVERIFY(s_->device->commands().isEmpty());
    }

    void oneThatWasClickedOrTabbedToTakesIt_data() { everySelector(); }
    void oneThatWasClickedOrTabbedToTakesIt()
    {
        QFETCH(QString, name);
        for (const Qt::FocusReason reason : {Qt::MouseFocusReason, Qt::TabFocusReason}) {
            QComboBox *selector = shown(name);
            selector->setFocus(reason);
            QVERIFY(selector->hasFocus());
            const int before = selector->currentIndex();
            QVERIFY(turnWheelOver(*selector, before == 0 ? -120 : 120));
            QVERIFY(selector->currentIndex() != before);
        }
    }

    void aClickAndTabGiveTheFocus()
    {
        QComboBox *selector = shown(QStringLiteral("comboBox_KM_Control"));
        s_->window->setFocus();
        QTest::mouseClick(selector, Qt::LeftButton);
        selector->hidePopup();
        QVERIFY(selector->hasFocus());
        QTest::keyClick(selector, Qt::Key_Tab);
        QVERIFY(s_->combo("comboBox_USB_Control")->hasFocus());
    }

private:
    static void everySelector()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"comboBox_SelectPort", "comboBox_KM_Control", "comboBox_USB_Control",
              "comboBox_Select_Display_Mode", "comboBox_Select_active_port",
              "comboBox_Enable_or_Disable_Cursor_Roll", "comboBox_number_of_setting",
              "comboBox_mouse_movement_resolution_setting_1",
              "comboBox_mouse_movement_resolution_setting_2",
              "comboBox_mouse_movement_resolution_setting_3",
              "comboBox_mouse_movement_resolution_setting_4"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    /// The selector of that name, on the page where it stands.
    QComboBox *shown(const QString &name)
    {
        QComboBox *selector = s_->combo(name.toLatin1().constData());
        auto *pages = s_->window->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
        for (int page = 0; page < pages->count(); ++page) {
            if (pages->widget(page)->isAncestorOf(selector))
                pages->setCurrentIndex(page);
        }
        return selector;
    }

    /// As the system reports it; `angle` is 120 a notch, positive away from the user. Returns
    /// whether somebody took it.
    static bool turnWheelOver(QComboBox &selector, int angle)
    {
        const QPoint middle = selector.rect().center();
        QWheelEvent wheel(middle, selector.mapToGlobal(middle), QPoint(), QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&wheel);
        qApp->notify(&selector, &wheel); // sendEvent() would make it the program's own
        return wheel.isAccepted();
    }

    std::unique_ptr<SerialWindow> s_;
};

QTEST_MAIN(SelectorWheelTest)
#include "tst_selector_wheel.moc"
