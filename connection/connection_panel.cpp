#include "connection/connection_panel.h"

#include "connection/connection_controls.h"
#include "log/notices.h"
#include "session/device_link.h"
#include "session/initial_exchange.h"

#include <QComboBox>
#include <utility>

ConnectionPanel::ConnectionPanel(QObject &window, DeviceLink &link, ConnectionControls &controls,
                                 InitialExchange &exchange, QComboBox &portSelector,
                                 std::function<bool()> isTcpIpSelected, Timing timing)
    : window_(window), link_(link), controls_(controls), exchange_(exchange),
      portSelector_(portSelector), isTcpIpSelected_(std::move(isTcpIpSelected)), timing_(timing)
{
}

void ConnectionPanel::switchOn()
{
    if (isTcpIpSelected_()) {
        link_.openNetworkLink();
        link_.connection().later(timing_.handshakeWatchdog, window_, "is_not_Connected_Message");
    } else {
        link_.openSerialLink(portSelector_.currentText().toStdString());
    }
    Q_EMIT readBackWanted();
}

void ConnectionPanel::switchOff()
{
    link_.closeActiveLink();
}

void ConnectionPanel::openSelectedPort()
{
    controls_.setHandlersArmed(false);
    controls_.showDisconnected();
    link_.openSerialLink(portSelector_.currentText().toStdString());
    exchange_.sendAll();
    controls_.setHandlersArmed(true);
}

void ConnectionPanel::judgeConnection()
{
    if (!link_.connection().road() || controls_.countsAsConnected())
        return;
    // Deliberate: a network connection without an answer ends the program.
    warnAndExit(QStringLiteral("Check if the device is on the same network as the PC"));
}
