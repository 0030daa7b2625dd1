#pragma once

#include "session/datagram_bursts.h"
#include "session/module_search.h"

#include <optional>

/// What a module answered to a login.
struct ModuleLoginResult
{
    enum class Outcome {
        Accepted,      ///< `configuration` is what it has stored
        Refused,       ///< the credentials are wrong
        Silent,        ///< nothing came
        NotUnderstood, ///< something came that is neither of the first two
        NotSent        ///< nothing came, and no login has left this machine; `problem` says why
    };

    Outcome outcome = Outcome::Silent;
    usr_frame::ConfigurationReply configuration;
    QString problem; ///< in the system's words
};

/// A user name and its password. They appear in requests and nowhere else.
struct ModuleCredentials
{
    QString username;
    QString password;
};

/// What is to be written into a module. What stays as it is has to be said as well, but for the
/// name: the module takes all of it.
struct ModuleSettings
{
    QString ipAllocation; ///< "00" for DHCP, "80" for a static address
    QString ip;           ///< dotted, as are the next two
    QString gateway;
    QString subnetMask;
    std::optional<QString> name; ///< at most 16 bytes in UTF-8; none keeps the one that was found
    ModuleCredentials newCredentials;
};

/// Speaks with one module that a search has found, without blocking: the login that reads its
/// configuration, and the setup that writes it. One at a time.
class ModuleSession : public QObject
{
    Q_OBJECT

public:
    ModuleSession(ModuleOnLan module, ModuleCredentials credentials, ModuleNetwork network = {},
                  QObject *parent = nullptr);
    ~ModuleSession() override;

    /// Asks for the configuration, again where no answer comes in time; loggedIn() follows. A
    /// refusal is an answer.
    void logIn();

    /// Sends the setup and the commit that makes the module take it. Nothing is awaited: a search
    /// tells when the module is back and where. Returns why they have not both left this machine,
    /// or an empty text; nothing is sent where a text is longer than its field or an address is
    /// none.
    QString setUp(const ModuleSettings &settings);

Q_SIGNALS:
    void loggedIn(const ModuleLoginResult &result);

    /// Everything that passes, for a record that leaves the credentials out.
    void written(const QByteArray &request);
    void received(const QByteArray &reply);

private:
    void attempt();
    void take(const QNetworkDatagram &datagram);
    void onTimeUp();
    void finish(const ModuleLoginResult &result);
    bool bindSocket();
    bool send(const QString &request);

    ModuleOnLan module_;
    ModuleCredentials credentials_;
    ModuleNetwork network_;
    QUdpSocket socket_;
    DatagramBursts bursts_{socket_, [this](const QNetworkDatagram &datagram) { take(datagram); }};
    QTimer answerWait_;
    int attemptsLeft_ = 0;
    bool isAsking_ = false;
    bool hasLeft_ = false; ///< one of the logins
    QString problem_;      ///< why the last request has not left
    bool cameAnything_ = false;
};
