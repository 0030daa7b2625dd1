#pragma once

#include "device/usr_frame.h"
#include "session/datagram_bursts.h"
#include "session/module_road.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QUdpSocket>

/// A network module that answered a search.
struct ModuleOnLan
{
    usr_frame::DiscoveryReply reply;
    ModuleRoad road; ///< on which it answered; later requests leave by it
};

/// What came of a search.
struct ModuleSearchResult
{
    QString problem; ///< why there was no search, in the system's words; empty when there was one
    bool isPortTaken = false;   ///< the problem: another program has the discovery port
    QList<ModuleOnLan> modules; ///< each MAC once, in the order of their first answers
    int ignored = 0;            ///< answers that no module gives, by their size
};

/// Looks for network modules on the LAN without blocking: one request on each road, then
/// everybody's answers for a while. The window's own search (USR_searcher) blocks, and starts over
/// where an answer has another size; here such an answer is counted and left aside.
class ModuleSearch : public QObject
{
    Q_OBJECT

public:
    explicit ModuleSearch(ModuleNetwork network = {}, QObject *parent = nullptr);
    ~ModuleSearch() override;

    /// Begins; finished() follows, from within this call where the discovery port is in use
    /// and not to be waited for. May begin again afterwards.
    void start();

Q_SIGNALS:
    void finished(const ModuleSearchResult &result);

    /// Everything that passes, for a record.
    void written(const QByteArray &request);
    void received(const QByteArray &reply);

private:
    void begin();
    void take(const QNetworkDatagram &datagram);
    void finish();

    ModuleNetwork network_;
    QUdpSocket socket_;
    DatagramBursts bursts_{socket_, [this](const QNetworkDatagram &datagram) { take(datagram); }};
    QTimer end_;
    QElapsedTimer sinceStart_;
    QTimer again_; ///< until the discovery port is tried again
    ModuleSearchResult result_;
    QSet<QString> known_; ///< MACs
};
