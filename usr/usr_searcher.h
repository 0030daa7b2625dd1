#pragma once

#include "session/link_recorder.h"
#include "session/module_road.h"

#include <QHostAddress>
#include <QList>
#include <QSet>
#include <QString>
#include <QUdpSocket>
#include <chrono>
#include <string>

/// What the module protocol needs of the world; tests bend it.
struct UsrNetwork
{
    QHostAddress localAddress{QHostAddress::AnyIPv4}; ///< where both sockets are bound
    quint16 discoveryPort = 4242;                     ///< where modules answer a search; 0 is any
    /// Where every request goes. 255.255.255.255 says nothing of the interface: where the PC has
    /// several (broadcastRoads()), a search leaves by each.
    QHostAddress broadcast{QHostAddress::Broadcast};
    quint16 modulePort = 1901;                     ///< where modules listen
    std::chrono::milliseconds afterBroadcast{500}; ///< rest after a search or login request
    std::chrono::milliseconds collection{1000};    ///< how long answers to a search are taken
    LinkRecorder *recorder = nullptr;              ///< keeps what passes; nobody does with null
};

/// Speaks the network module's management protocol: finds modules, reads a module's configuration
/// after proving its credentials, and writes a new one.
///
/// The socket that it is serves discovery only and is open only while one runs. Every operation
/// blocks the calling thread, which is the GUI thread, under the wait cursor; no events are handled
/// meanwhile. A search takes 1.5 s, and every other operation begins with one. Requests to a module
/// leave by the interface on which it answered. Failures are reported in the event log and in a
/// notice and come back as -1 or "-1"; nothing throws. Credentials appear in the requests and
/// nowhere else. A record names the module that is spoken to, or the address that a search goes to.
class USR_searcher : public QUdpSocket
{
    Q_OBJECT

public:
    static constexpr QLatin1String failed{"-1"}; ///< what could not be read, or was refused

    /// Finds modules, for the list of hardware.
    explicit USR_searcher(QObject *parent = nullptr, UsrNetwork network = {});

    /// Reads the module at `target` (dotted) with its credentials.
    USR_searcher(const QString &target, const QString &user, const QString &secret,
                 UsrNetwork network = {});

    /// Writes to the module at `target` (dotted): addresses (dotted) and `allocation`, "00" for
    /// DHCP or "80" for a static address.
    USR_searcher(const QString &target, const QString &ip, const QString &subnetMask,
                 const QString &gateway, const QString &allocation, const QString &user,
                 const QString &secret, UsrNetwork network = {});

    /// Searches the network and keeps every answer; where it left by several interfaces, the first
    /// of each module (by its MAC). Starts over, without limit, as long as one of them is not 36
    /// bytes long. Returns 1 when a module answered, -1 when none did or the search
    /// failed; a discovery port in use says so on a debug line only.
    int search_USR();
    /// The last search's answers as hexadecimal text, in the order of their arrival.
    QList<QString> get_replies() const { return replies; }
    /// Where each of them came from.
    QList<QHostAddress> get_senders() const { return senders; }

    /// Searches and takes MAC, name and address from the last answer that carries the target's
    /// address. Without one, what was known before stays.
    void get_data_from_USR();
    /// Searches for the module by its MAC. Returns its address (dotted), empty when it is gone.
    QString get_IP_after_hanging();

    /// Logs in, again and again up to 100 times while the answer is not a configuration. Returns
    /// "-1" when the first answer is a refusal, else "1", also when no answer ever came.
    QString check_credentials();

    /// Each logs in and reads one field of the answer; "-1" when there is none to read.
    QString get_IP_allocation(); ///< "00" for DHCP, "80" for static
    QString get_static_IP();     ///< dotted
    QString get_gateway();       ///< dotted
    QString get_subnet_mask();   ///< dotted
    /// Logs in and returns the name that the module gave when it was found.
    QString get_name();

    /// Searches, then writes the configuration; nothing is awaited. Returns 1, or -1 on failure.
    int setup_USR();
    /// Writes new credentials (at most 6 characters each) and a new name (at most 16) along with
    /// the configuration. Returns 1, or -1 on failure; with a text too long nothing is sent.
    int change_username_password_and_name(const QString &user, const QString &secret,
                                          const QString &moduleName);

    /// The name that the module gave when it was last found; sends nothing.
    QString lastKnownName() const { return name; }
    /// The module is at `address` (dotted) from now on.
    void setTargetIP(const QString &address) { targetIP = address; }

private:
    bool discover();
    void collectReplies();
    void keepNextDatagram();
    bool isAnsweredAgain(const QString &reply);
    QList<ModuleRoad> searchRoads() const;
    bool hasOddReply() const;
    void attemptLogin();
    void bindConfigSocket();
    void leaveConfigSocket();
    void send(QUdpSocket &socket, const QString &request, const ModuleRoad &road);
    void note(LinkRecorder::Direction direction, const QString &address, const QByteArray &frame);
    QString readField(const char *failure, QString (*field)(const QString &reply));

    QList<QString> replies;
    QList<QHostAddress> senders;
    QString targetIP;
    QString newIP;
    QString newSubnetMask;
    QString newGateway;
    QString mac;
    QString ipAllocation;
    QString name;
    QString nameHex;
    QString newNameHex;
    QString username;
    QString password;
    QString newUsername;
    QString newPassword;
    quint8 useNewName = 0;
    qint32 retryCount = 0;
    std::string lastReply;
    QUdpSocket configSocket;

    UsrNetwork network_;
    QList<ModuleRoad> roads_;          ///< by which the last search left
    QList<ModuleRoad> roadsOfReplies_; ///< by which each of the replies came
    QSet<QString> macs_;               ///< of the modules that answered the last search
    ModuleRoad targetRoad_;            ///< by which the target answered
};
