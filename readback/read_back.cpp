#include "readback/read_back.h"

#include "connection/connection_controls.h"
#include "device/reply.h"
#include "layout/layout_submission.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/terminal_view.h"
#include "mouse/mouse_settings.h"
#include "readback/reply_application.h"
#include "session/device_link.h"
#include "session/initial_exchange.h"

#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <exception>
#include <optional>

namespace {
constexpr int longestBuffer = 1000; // characters; a fuller one is emptied before the next chunk
constexpr int mostRetries = 5;
constexpr int longestHandshake = 4; // characters of "//RL"
} // namespace

ReadBack::ReadBack(QObject &window, Parts parts, Timing timing)
    : window_(window), parts_(parts), timing_(timing)
{
    scroll_.setSingleShot(true);
    scroll_.setInterval(timing_.scrollToEnd);
    QObject::connect(&scroll_, SIGNAL(timeout()), &window_, SLOT(scroll_Cursor_to_the_end()));
}

void ReadBack::receiveSerial()
{
    Connection &connection = parts_.link.connection();
    ReceivedText &received = connection.received();
    AwaitedAnswers &awaited = connection.awaited();
    const QString chunk = received.decoder.decode(connection.takeArrived());
    deviceAnswered(connection, chunk);
    if (received.receiveBuffer.size() > longestBuffer)
        received.receiveBuffer.clear();
    received.receiveBuffer += chunk;
    noticeSavedLayout(connection, received.receiveBuffer.toStdString());
    if (!received.receiveBuffer.isEmpty()) {
        const std::string text = received.receiveBuffer.toStdString();
        if (parts_.replies.applyFrontPanel(text))
            received.replyReady = true;
        if (applyControlRules(text))
            received.replyReady = true;
    }
    show(chunk);
    if (awaited.awaitingStatusReply) {
        awaited.awaitingStatusReply = false;
        connection.later(timing_.takeOver, window_, "get_data_from_TRQ_by_serial_port");
    }
    if (received.horizontalDimensionSaved) {
        received.horizontalDimensionSaved = false;
        received.replyReady = false;
        connection.later(timing_.layoutLoad, window_, "set_current_layout_from_buff");
    }
    if (!awaited.awaitingRlReply && received.replyReady)
        received.forgetBuffer();
}

void ReadBack::takeOver()
{
    Connection &connection = parts_.link.connection();
    if (!connection.road())
        return;
    ReceivedText &received = connection.received();
    const std::string text = received.receiveBuffer.toStdString();
    received.statusReply = text;
    received.configurationReply = text;
    received.layoutReply = replyValue(text, "//FF");
    connection.awaited().awaitingStatusReply = false;
    connection.awaited().awaitingBpReply = false;
    const bool applied = applyConfiguration(connection);
    connection.awaited().awaitingRlReply = false;
    if (received.replyReady)
        received.forgetBuffer();
    if (!applied)
        retryOrGiveUp(connection); // after the last step, which would clear the retry's flags
}

void ReadBack::receiveNetwork()
{
    const QPointer<Connection> connection(&parts_.link.connection());
    while (connection && !connection->hasEnded()) {
        const std::optional<QByteArray> datagram = connection->takeNextArrived();
        if (!datagram)
            return;
        takeDatagramReply(*connection, QString::fromUtf8(*datagram));
    }
}

void ReadBack::takeDatagramReply(Connection &connection, const QString &chunk)
{
    const QPointer<Connection> current(&connection);
    ReceivedText &received = connection.received();
    AwaitedAnswers &awaited = connection.awaited();
    const bool everythingIsAwaited = !connection.isConnected();
    const bool answered = deviceAnswered(connection, chunk);
    if (answered)
        show(chunk);
    const std::string text = chunk.toStdString();
    const bool readsEverything = everythingIsAwaited && answered;
    if (received.horizontalDimensionSaved && awaited.awaitingBpReply && !readsEverything) {
        received.horizontalDimensionSaved = false;
        received.layoutReply = text;
        awaited.awaitingBpReply =
            everythingIsAwaited; // it was on its way before that was asked for
        loadLayout(text);
    } else {
        takeAnswers(connection, text);
    }
    if (!current || current->hasEnded()) // while the user was being told
        return;
    noticeSavedLayout(connection, text);
    if (applyControlRules(text))
        received.replyReady = true;
    if (parts_.replies.applyFrontPanel(text))
        received.replyReady = true;
}

void ReadBack::takeAnswers(Connection &connection, const std::string &text)
{
    ReceivedText &received = connection.received();
    AwaitedAnswers &awaited = connection.awaited();
    if (awaited.awaitingStatusReply) {
        received.statusReply = text;
        awaited.awaitingStatusReply = false;
    }
    if (!awaited.awaitingBpReply)
        return;
    received.layoutReply = text;
    received.horizontalDimensionSaved = false; // the layout is among what was asked for
    awaited.awaitingBpReply = false;
    if (!applyConfiguration(connection))
        retryOrGiveUp(connection);
}

void ReadBack::loadLayoutFromBuffer()
{
    Connection &connection = parts_.link.connection();
    if (!connection.road())
        return;
    connection.received().replyReady = false;
    loadLayout(connection.received().receiveBuffer.toStdString());
}

void ReadBack::loadLayout(const std::string &reply)
{
    try {
        parts_.layout.load(reply);
    } catch (const std::exception &error) {
        writeLog(std::string("The layout could not be read back: ") + error.what());
    }
}

bool ReadBack::deviceAnswered(Connection &connection, const QString &chunk)
{
    if (connection.isConnected())
        return true;
    QString &tail = connection.received().handshakeTail;
    const QString recent = tail + chunk;
    tail = recent.right(longestHandshake - 1);
    if (!recent.contains(QStringLiteral("//RL")) && !recent.contains(QStringLiteral("KM")))
        return false;
    connection.markConnected(true);
    parts_.controls.enableDeviceControls();
    parts_.controls.enableSettingsCombos();
    parts_.controls.setConnected();
    connection.received().configurationReply = chunk.toStdString();
    return true;
}

void ReadBack::show(const QString &chunk)
{
    parts_.terminal.append(chunk);
    if (!scroll_.isActive()) // one for all that comes meanwhile: a flood would leave thousands
        scroll_.start();
}

void ReadBack::noticeSavedLayout(Connection &connection, const std::string &text)
{
    if (text.find("Saving horizontal dimension as") == std::string::npos)
        return;
    connection.received().horizontalDimensionSaved = true;
    connection.received().receiveBuffer.clear();
    parts_.exchange.sendBpQuery();
}

bool ReadBack::applyControlRules(const std::string &text)
{
    const bool km = parts_.replies.applyKmControl(text);
    const bool usb = parts_.replies.applyUsbControl(text);
    return km || usb;
}

bool ReadBack::applyConfiguration(Connection &connection)
{
    ReceivedText &received = connection.received();
    parts_.controls.setHandlersArmed(false);
    bool applied = true;
    try {
        if (!received.statusReply.empty())
            parts_.replies.applyStatus(received.statusReply);
        if (!received.configurationReply.empty())
            parts_.replies.applyConfiguration(received.configurationReply);
        parts_.layout.load(received.layoutReply);
        parts_.controls.setHandlersArmed(true);
        received.readRetryCount = 0;
    } catch (const std::exception &) {
        applied = false;
    }
    parts_.mouse.setReady(true);
    return applied;
}

void ReadBack::retryOrGiveUp(Connection &connection)
{
    if (connection.received().readRetryCount < mostRetries) {
        ++connection.received().readRetryCount;
        refresh();
        return;
    }
    connection.received().readRetryCount = 0;
    const QPointer<Connection> current(&connection);
    showWarningBox(QStringLiteral("Error"), QStringLiteral("Setting data from TRQ error"));
    if (!current || current->hasEnded())
        return;
    parts_.link.setSendEnabled(true);
    parts_.controls.setHandlersArmed(true);
    refreshAllowed = true;
}

void ReadBack::refresh()
{
    parts_.controls.setHandlersArmed(false);
    parts_.link.connection().received().receiveBuffer.clear();
    parts_.mouse.trimCustomEntries();
    askForEverything();
}

void ReadBack::readPlainly()
{
    parts_.link.connection().received().receiveBuffer.clear();
    askForEverything();
}

void ReadBack::askForEverything()
{
    Connection &connection = parts_.link.connection();
    connection.markConnected(false);
    connection.received().handshakeTail.clear();
    parts_.exchange.sendAll();
    parts_.controls.setHandlersArmed(true);
}

void ReadBack::refreshPressed()
{
    QTimer::singleShot(timing_.refreshDisable, &window_, SLOT(disable_refresh_button()));
    lockRefresh();
    if (refreshAllowed) {
        refreshAllowed = false;
        refresh();
    }
    QTimer::singleShot(timing_.refreshEnable, &window_, SLOT(enable_refresh_button()));
}

void ReadBack::lockRefresh()
{
    parts_.controls.setControlEnabled(parts_.refreshButton, false);
}

void ReadBack::unlockRefresh()
{
    refreshAllowed = true;
    parts_.controls.setControlEnabled(parts_.refreshButton, true);
}
