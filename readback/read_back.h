#pragma once

#include <QString>
#include <QTimer>
#include <chrono>
#include <string>

class Connection;
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
/// What was received and what is still awaited lies with the connection; nothing of it reaches the
/// next one. The timers call the window's slots by name.
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

    /// Takes what has arrived on the serial line.
    void receiveSerial();
    /// Takes every datagram that has arrived, each as one reply.
    void receiveNetwork();
    /// Serial link: takes the three replies out of the buffer and applies them. Without a
    /// connection: nothing.
    void takeOver();
    /// Loads the grid from the buffer. A malformed text leaves the grid as it is and is logged.
    /// Without a connection: nothing.
    void loadLayoutFromBuffer();

    /// Starts a full read-back.
    void refresh();
    /// Reads the switch without disarming the settings controls first: for a settings file that was
    /// not chosen after all.
    void readPlainly();

    /// The Refresh button: at most one read-back per 1700 ms.
    void refreshPressed();
    void lockRefresh();
    void unlockRefresh();

private:
    bool deviceAnswered(Connection &connection, const QString &chunk);
    void show(const QString &chunk);
    void noticeSavedLayout(Connection &connection, const std::string &text);
    bool applyControlRules(const std::string &text);
    void takeDatagramReply(Connection &connection, const QString &chunk);
    void takeAnswers(Connection &connection, const std::string &text);
    void loadLayout(const std::string &reply);
    void askForEverything();
    bool applyConfiguration(Connection &connection);
    void retryOrGiveUp(Connection &connection);

    QObject &window_;
    Parts parts_;
    Timing timing_;

    QTimer scroll_;
    bool refreshAllowed = true;
};
