#pragma once

#include <QString>
#include <QStringDecoder>
#include <chrono>
#include <string>

class ConnectionControls;
class DeviceLink;
class InitialExchange;
class LayoutSubmission;
class MouseSettings;
class QObject;
class QPushButton;
class ReplyApplication;
class TerminalView;

/// Reads the switch's configuration back: asks for it, collects what arrives, decides when an
/// answer is complete, applies it and tries again when it does not parse.
///
/// Owns the receive buffer, the three stored replies and the flags of the read under way. Its
/// timers call the window's slots by name.
class ReadBack
{
public:
    struct Timing
    {
        std::chrono::milliseconds scrollToEnd{100}; ///< after text was shown
        std::chrono::milliseconds takeOver{1000};   ///< serial: from the first chunk to reading it
        std::chrono::milliseconds layoutLoad{1000}; ///< serial: from "saved" to reading the layout
        std::chrono::milliseconds refreshDisable{50};  ///< Refresh is disabled once more
        std::chrono::milliseconds refreshEnable{1700}; ///< Refresh may start the next read-back
    };

    struct Parts
    {
        DeviceLink &link;
        InitialExchange &exchange;
        ConnectionControls &controls;
        TerminalView &terminal;
        MouseSettings &mouse;
        LayoutSubmission &layout;
        ReplyApplication &replies;
        QPushButton &refreshButton;
    };

    /// `window` has the slots that the timers call: scroll_Cursor_to_the_end(), refresh_UI() and so
    /// on.
    ReadBack(QObject &window, Parts parts, Timing timing);

    /// Takes what the serial port holds.
    void receiveSerial();
    /// Takes every pending datagram, each as one reply.
    void receiveNetwork();
    /// Serial link: takes the three replies out of the buffer and applies them.
    void takeOver();
    /// Loads the grid from the buffer. A malformed text leaves the grid as it is and is logged.
    void loadLayoutFromBuffer();

    /// Starts a full read-back.
    void refresh();
    /// Reads the switch without disarming the settings controls first: for a settings file that was
    /// not chosen after all.
    void readPlainly();
    /// Forgets what was received; another link begins.
    void startOver();

    /// The Refresh button: at most one read-back per 1700 ms.
    void refreshPressed();
    void lockRefresh();
    void unlockRefresh();

    bool isConfigurationLoaded() const { return configurationLoaded; }

private:
    bool deviceAnswered(const QString &chunk);
    void show(const QString &chunk);
    void noticeSavedLayout(const std::string &text);
    void applyChunkRules(const std::string &text);
    void takeDatagramReply(const QString &chunk);
    void loadLayout(const std::string &reply);
    void askForEverything();
    bool applyConfiguration();
    void retryOrGiveUp();
    void forgetBuffer();

    QObject &window_;
    Parts parts_;
    Timing timing_;

    std::string configurationReply;
    std::string statusReply;
    std::string layoutReply;
    QString receiveBuffer;
    QString handshakeTail_; ///< the end of the last chunk, for a handshake that the line split
    QStringDecoder decoder_{QStringDecoder::Utf8};
    bool refreshAllowed = true;
    bool horizontalDimensionSaved = false;
    bool replyReady = false;
    bool configurationLoaded = true;
    int readRetryCount = 0;
};
