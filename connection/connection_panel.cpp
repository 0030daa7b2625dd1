#include "connection/connection_panel.h"

#include "connection/connection_controls.h"
#include "connection/device_link.h"
#include "connection/initial_exchange.h"
#include "log/notices.h"

#include <QComboBox>
#include <QTimer>

ConnectionPanel::ConnectionPanel(QObject &window, DeviceLink &link, ConnectionControls &controls,
                                 InitialExchange &exchange, QComboBox &portSelector, Timing timing)
    : window_(window), link_(link), controls_(controls), exchange_(exchange),
      portSelector_(portSelector), timing_(timing)
{
}

void ConnectionPanel::switchOn()
{
    Q_EMIT startingOver();
    if (link_.isTcpIpSelected()) {
        link_.openNetworkLink();
        watchedLinks_.push_back(link_.linkNumber());
        QTimer::singleShot(timing_.handshakeWatchdog, &window_, SLOT(is_not_Connected_Message()));
    } else {
        link_.openSerialLink(portSelector_.currentText().toStdString());
    }
    Q_EMIT readBackWanted();
}

void ConnectionPanel::switchOff()
{
    link_.closeActiveLink();
    if (controls_.isConnected())
        controls_.setDisconnected();
}

void ConnectionPanel::openSelectedPort()
{
    controls_.setHandlersArmed(false);
    controls_.disableDeviceControls();
    controls_.disableSettingsCombos();
    controls_.setDisconnected();
    Q_EMIT startingOver();
    link_.openSerialLink(portSelector_.currentText().toStdString());
    exchange_.sendAll();
    controls_.setHandlersArmed(true);
}

void ConnectionPanel::judgeConnection()
{
    if (!watchedLinks_.empty()) {
        const int watched = watchedLinks_.front();
        watchedLinks_.pop_front();
        if (watched != link_.linkNumber())
            return;
    }
    if (controls_.countsAsConnected())
        return;
    // Deliberate: a network connection without an answer ends the program.
    warnAndExit(QStringLiteral("Check if the device is on the same network as the PC"));
}
