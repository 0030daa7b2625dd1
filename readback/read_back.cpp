#include "readback/read_back.h"

#include "connection/connection_controls.h"
#include "connection/device_link.h"
#include "connection/initial_exchange.h"
#include "device/reply.h"
#include "layout/layout_submission.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "log/terminal_view.h"
#include "mouse/mouse_settings.h"
#include "readback/reply_application.h"

#include <QPushButton>
#include <QTimer>
#include <exception>

namespace {
constexpr int longestBuffer = 1000; // characters; a fuller one is emptied before the next chunk
constexpr int mostRetries = 5;
constexpr int longestHandshake = 4; // characters of "//RL"
} // namespace

ReadBack::ReadBack(QObject &window, Parts parts, Timing timing)
    : window_(window), parts_(parts), timing_(timing)
{
}

void ReadBack::receiveSerial()
{
    const QString chunk = decoder_.decode(parts_.link.takeSerialBytes());
    deviceAnswered(chunk);
    if (receiveBuffer.size() > longestBuffer)
        receiveBuffer.clear();
    receiveBuffer += chunk;
    noticeSavedLayout(receiveBuffer.toStdString());
    if (!receiveBuffer.isEmpty()) {
        const std::string text = receiveBuffer.toStdString();
        if (parts_.replies.applyFrontPanel(text))
            replyReady = true;
        applyChunkRules(text);
    }
    show(chunk);
    if (parts_.exchange.isAwaitingStatusReply()) {
        parts_.exchange.statusReplyTaken();
        QTimer::singleShot(timing_.takeOver, &window_, SLOT(get_data_from_TRQ_by_serial_port()));
    }
    if (horizontalDimensionSaved) {
        horizontalDimensionSaved = false;
        replyReady = false;
        QTimer::singleShot(timing_.layoutLoad, &window_, SLOT(set_current_layout_from_buff()));
    }
    if (!parts_.exchange.isAwaitingRlReply() && replyReady)
        forgetBuffer();
}

void ReadBack::takeOver()
{
    const std::string received = receiveBuffer.toStdString();
    statusReply = received;
    parts_.exchange.statusReplyTaken();
    configurationReply = received;
    parts_.exchange.bpReplyTaken(); // deliberate, here as below: "//rl" stays awaited to the end
    layoutReply = replyValue(received, "//FF");
    parts_.exchange.bpReplyTaken();
    const bool applied = applyConfiguration();
    parts_.exchange.rlReplyTaken();
    if (replyReady)
        forgetBuffer();
    if (!applied)
        retryOrGiveUp(); // after the take-over's last step, which would clear the retry's flags
}

void ReadBack::receiveNetwork()
{
    QByteArray datagram;
    while (parts_.link.takeDatagram(datagram))
        takeDatagramReply(QString::fromUtf8(datagram));
}

void ReadBack::takeDatagramReply(const QString &chunk)
{
    if (deviceAnswered(chunk))
        show(chunk);
    const std::string text = chunk.toStdString();
    if (parts_.exchange.isAwaitingStatusReply()) {
        statusReply = text;
        parts_.exchange.statusReplyTaken();
    }
    if (parts_.exchange.isAwaitingBpReply()) {
        layoutReply = text;
        parts_.exchange.bpReplyTaken();
        if (horizontalDimensionSaved) {
            horizontalDimensionSaved = false;
            loadLayout(text);
        } else if (!applyConfiguration()) {
            retryOrGiveUp();
        }
    }
    noticeSavedLayout(text);
    applyChunkRules(text);
    if (parts_.replies.applyFrontPanel(text))
        replyReady = true;
}

void ReadBack::loadLayoutFromBuffer()
{
    replyReady = false;
    loadLayout(receiveBuffer.toStdString());
}

void ReadBack::loadLayout(const std::string &reply)
{
    try {
        parts_.layout.load(reply);
    } catch (const std::exception &error) {
        writeLog(std::string("The layout could not be read back: ") + error.what());
    }
}

bool ReadBack::deviceAnswered(const QString &chunk)
{
    if (parts_.controls.isConnected())
        return true;
    const QString recent = handshakeTail_ + chunk;
    handshakeTail_ = recent.right(longestHandshake - 1);
    if (!recent.contains(QStringLiteral("//RL")) && !recent.contains(QStringLiteral("KM")))
        return false;
    parts_.controls.markConnected(true);
    parts_.controls.enableDeviceControls();
    parts_.controls.enableSettingsCombos();
    parts_.controls.setConnected();
    configurationReply = chunk.toStdString();
    return true;
}

void ReadBack::show(const QString &chunk)
{
    parts_.terminal.append(chunk);
    QTimer::singleShot(timing_.scrollToEnd, &window_, SLOT(scroll_Cursor_to_the_end()));
}

void ReadBack::noticeSavedLayout(const std::string &text)
{
    if (text.find("Saving horizontal dimension as") == std::string::npos)
        return;
    horizontalDimensionSaved = true;
    receiveBuffer.clear();
    parts_.exchange.sendBpQuery();
}

void ReadBack::applyChunkRules(const std::string &text)
{
    if (parts_.replies.applyKmControl(text))
        replyReady = true;
    if (parts_.replies.applyUsbControl(text))
        replyReady = true;
}

bool ReadBack::applyConfiguration()
{
    parts_.controls.setHandlersArmed(false);
    bool applied = true;
    try {
        if (!statusReply.empty())
            parts_.replies.applyStatus(statusReply);
        if (!configurationReply.empty())
            parts_.replies.applyConfiguration(configurationReply);
        parts_.layout.load(layoutReply);
        configurationLoaded = true;
        parts_.controls.setHandlersArmed(true);
        readRetryCount = 0;
    } catch (const std::exception &) {
        applied = false;
    }
    parts_.mouse.setReady(true);
    return applied;
}

void ReadBack::retryOrGiveUp()
{
    if (readRetryCount < mostRetries) {
        ++readRetryCount;
        refresh();
        return;
    }
    showWarningBox(QStringLiteral("Error"), QStringLiteral("Setting data from TRQ error"));
    configurationLoaded = true;
    parts_.link.setSendEnabled(true);
    parts_.controls.setHandlersArmed(true);
    refreshAllowed = true;
    readRetryCount = 0;
}

void ReadBack::forgetBuffer()
{
    receiveBuffer.clear();
    replyReady = false;
}

void ReadBack::refresh()
{
    parts_.controls.setHandlersArmed(false);
    receiveBuffer.clear();
    parts_.mouse.trimCustomEntries();
    askForEverything();
}

void ReadBack::readPlainly()
{
    receiveBuffer.clear();
    askForEverything();
}

void ReadBack::askForEverything()
{
    parts_.controls.markConnected(false);
    handshakeTail_.clear();
    parts_.exchange.sendAll();
    parts_.controls.setHandlersArmed(true);
}

void ReadBack::startOver()
{
    forgetBuffer();
    horizontalDimensionSaved = false; // the layout that was to follow went with the former link
    handshakeTail_.clear();
    decoder_.resetState();
    parts_.mouse.trimCustomEntries();
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
    parts_.refreshButton.setEnabled(false);
}

void ReadBack::unlockRefresh()
{
    refreshAllowed = true;
    parts_.refreshButton.setEnabled(true);
}
