#include "support/link_bench.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

/// What the window shows of the connection.
class ConnectionControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void disconnectedIsRedAndLeavesOnlyOn()
    {
        LinkBench f;
        f.controls.setDisconnected();
        QCOMPARE(f.indicator.styleSheet(),
                 QStringLiteral(
                     "background-color: red; border-radius: 10px; height: 20px; width: 20px;"));
        QVERIFY(f.on.isEnabled());
        QVERIFY(!f.off.isEnabled());
        QCOMPARE(f.indicator.toolTip(), QStringLiteral("Disconnected"));
        QCOMPARE(f.indicator.accessibleName(), QStringLiteral("Disconnected"));
    }

    void connectedIsGreenAndLeavesOnlyOff()
    {
        LinkBench f;
        f.controls.setConnected();
        QCOMPARE(f.indicator.styleSheet(),
                 QStringLiteral(
                     "background-color: green; border-radius: 10px; height: 20px; width: 20px;"));
        QVERIFY(!f.on.isEnabled());
        QVERIFY(f.off.isEnabled());
        QVERIFY(f.controls.countsAsConnected());
        QCOMPARE(f.indicator.toolTip(), QStringLiteral("Connected"));
        QCOMPARE(f.indicator.accessibleName(), QStringLiteral("Connected"));
    }

    void aReasonStandsInTheToolTipUntilTheNextConnection()
    {
        LinkBench f;
        f.controls.setDisconnected();
        f.controls.explain(QStringLiteral("Disconnected: ttyUSB0 could not be opened"));
        QCOMPARE(f.indicator.toolTip(),
                 QStringLiteral("Disconnected: ttyUSB0 could not be opened"));
        QCOMPARE(f.on.toolTip(), f.indicator.toolTip());
        f.controls.setConnected();
        QCOMPARE(f.indicator.toolTip(), QStringLiteral("Connected"));
        QCOMPARE(f.on.toolTip(), QString());
    }

    void theIndicatorsToolTipIsNotPaintedLikeTheIndicator()
    {
        LinkBench f;
        f.controls.setConnected();
        f.on.setStyleSheet(f.indicator.styleSheet());
        f.window.show();
        for (QPushButton *button : {&f.indicator, &f.on}) {
            button->setToolTip(QStringLiteral("why"));
            QHelpEvent asked(QEvent::ToolTip, QPoint(1, 1), button->mapToGlobal(QPoint(1, 1)));
            QCoreApplication::sendEvent(button, &asked);
            QTRY_VERIFY(tip() != nullptr);
            QCOMPARE(tip()->grab().toImage().pixelColor(2, 2),
                     QToolTip::palette().color(QPalette::ToolTipBase));
            QToolTip::hideText();
            QTRY_VERIFY(tip() == nullptr);
        }
    }

    void groupsAreSwitchedTogether()
    {
        LinkBench f;
        f.controls.disableDeviceControls();
        QVERIFY(!f.device.isEnabled() && !f.beepOn.isEnabled() && !f.beepOff.isEnabled());
        QVERIFY(f.combo.isEnabled());
        f.controls.disableSettingsCombos();
        QVERIFY(!f.combo.isEnabled());
        f.controls.enableDeviceControls();
        f.controls.enableSettingsCombos();
        QVERIFY(f.device.isEnabled() && f.beepOn.isEnabled() && f.combo.isEnabled());
        f.controls.setBeepButtonsEnabled(false, true);
        QVERIFY(!f.beepOn.isEnabled() && f.beepOff.isEnabled());
    }

    void whatALoadHoldsComesBackAsItWas()
    {
        QPushButton enabled;
        QPushButton disabled;
        disabled.setEnabled(false);
        LinkBench f({}, {&enabled, &disabled});
        f.controls.holdWhileLoading(true);
        QVERIFY(!enabled.isEnabled() && !disabled.isEnabled());
        f.controls.holdWhileLoading(false);
        QVERIFY(enabled.isEnabled());
        QVERIFY(!disabled.isEnabled());
    }

    void disarmedHandlersComeBackAsTheyWere()
    {
        LinkBench f;
        for (const bool before : {true, false}) {
            f.controls.setHandlersArmed(before);
            {
                const DisarmedHandlers disarmed(f.controls);
                QVERIFY(!f.controls.areHandlersArmed());
            }
            QCOMPARE(f.controls.areHandlersArmed(), before);
        }
    }

private:
    static QWidget *tip()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->inherits("QTipLabel") && window->isVisible())
                return window;
        }
        return nullptr;
    }
};

QTEST_MAIN(ConnectionControlsTest)
#include "tst_connection_controls.moc"
