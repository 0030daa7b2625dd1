#include "connection/connection_presenter.h"

#include "connection/connection_controls.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/terminal_view.h"
#include "session/device_link.h"

#include <QLabel>

ConnectionPresenter::ConnectionPresenter(DeviceLink &link, ConnectionControls &controls,
                                         TerminalView &terminal, Widgets widgets)
    : controls_(controls), terminal_(terminal), widgets_(widgets)
{
    connect(&link, &DeviceLink::openingNetworkLink, this, [this] { terminal_.clear(); });
    connect(&link, &DeviceLink::opened, this, &ConnectionPresenter::showOpened);
    connect(&link, &DeviceLink::openFailed, this, &ConnectionPresenter::showOpenFailure);
    connect(&link, &DeviceLink::notConnectedInTime, this,
            [] { warnAndExit(QStringLiteral("No connection")); });
    connect(&link, &DeviceLink::ended, this, [this] { controls_.showDisconnected(); });
    connect(&link, &DeviceLink::broken, this, &ConnectionPresenter::showBreak);
    connect(&link, &DeviceLink::unanswered, this, &ConnectionPresenter::showSilence);
    connect(&link, &DeviceLink::moduleChanged, this, &ConnectionPresenter::showModule);
    connect(&link, &DeviceLink::failed, this, &reportFailure);
}

ConnectionPresenter::~ConnectionPresenter() = default;

void ConnectionPresenter::showOpened()
{
    if (lostLinkNotice_)
        lostLinkNotice_->hide();
}

void ConnectionPresenter::showOpenFailure(const QString &reason)
{
    controls_.showDisconnected();
    controls_.explain(QStringLiteral("Disconnected: %1").arg(reason));
    writeLog(reason.toStdString());
}

void ConnectionPresenter::showBreak(const QString &name, const QString &reason)
{
    const QString message =
        QStringLiteral("The connection to %1 was lost: %2; check the cable, then press On")
            .arg(name, reason);
    controls_.explain(QStringLiteral("Disconnected: %1").arg(message));
    writeLog(message.toStdString());
    if (!lostLinkNotice_)
        lostLinkNotice_ = std::make_unique<QMessageBox>();
    showNotice(message, QMessageBox::Warning, *lostLinkNotice_);
}

void ConnectionPresenter::showSilence()
{
    const QString advice = controls_.countsAsConnected()
                               ? QStringLiteral("press Refresh to ask again")
                               : QStringLiteral("check that it is on and its cable, then press On");
    const QString message = QStringLiteral("No answer from the switch; %1").arg(advice);
    controls_.explain(message);
    writeLog(message.toStdString());
}

void ConnectionPresenter::showModule(const QString &address, const QString &name)
{
    widgets_.currentIp->setText(QStringLiteral("  IP: ") + address);
    widgets_.moduleName->setText(QStringLiteral("  Name: ") + name);
}
