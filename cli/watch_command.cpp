#include "cli/commands.h"
#include "cli/configuration_json.h"
#include "cli/switch_task.h"
#include "device/read_back_commands.h"
#include "device/switch_news.h"

#include <QDateTime>
#include <QTimer>

namespace {
/// Says what the switch says, a line at a time, until it is interrupted or the road breaks.
class WatchTask : public SwitchTask
{
public:
    WatchTask(const FoundDevice &found, const TaskWorld &world) : SwitchTask(found, world)
    {
        quiet_.setSingleShot(true);
        connect(&quiet_, &QTimer::timeout, this, &WatchTask::takeRest);
    }

protected:
    void begin() override
    {
        connect(&session(), &SwitchSession::received, this, &WatchTask::take);
        // A network module passes on what the switch says to whoever spoke to it last.
        session().write(readStatusCommand);
        QTimer::singleShot(options().timeout, this, [this] {
            if (!hasSpoken_)
                Q_EMIT warned(QStringLiteral("no answer from the switch yet; still listening"));
        });
    }

private:
    void take(const QByteArray &bytes)
    {
        hasSpoken_ = true;
        text_ += bytes;
        for (qsizetype end = text_.indexOf('\n'); end >= 0; end = text_.indexOf('\n')) {
            tell(text_.left(end));
            text_.remove(0, end + 1);
        }
        if (text_.size() > longestLine)
            takeRest();
        else if (!text_.isEmpty())
            quiet_.start(restOfLine);
    }

    /// What has come of a line whose end stays away.
    void takeRest()
    {
        if (!text_.isEmpty())
            tell(std::exchange(text_, {}));
    }

    void tell(QByteArray line)
    {
        if (line.endsWith('\r'))
            line.chop(1);
        const ControlNews news =
            controlNews({line.constData(), static_cast<std::size_t>(line.size())});
        if (news.kmPort)
            tell(QStringLiteral("km-control"), *news.kmPort);
        if (news.usbPort)
            tell(QStringLiteral("usb-control"), *news.usbPort);
        if (!news.kmPort && !news.usbPort)
            tell(QStringLiteral("text"), QString::fromUtf8(line));
    }

    void tell(const QString &event, const QJsonValue &value)
    {
        const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
        Q_EMIT happened({event, value.toVariant().toString()},
                        QJsonObject{{QStringLiteral("time"), time},
                                    {QStringLiteral("event"), jsonName(event)},
                                    {QStringLiteral("value"), value}});
    }

    static constexpr qsizetype longestLine = 4096; ///< bytes; a flood without line ends is cut
    static constexpr std::chrono::milliseconds restOfLine{500};

    QByteArray text_; ///< of a line that is not at its end
    QTimer quiet_;
    bool hasSpoken_ = false;
};
} // namespace

TaskMaker watchTasks(const TaskWorld &world)
{
    return [&world](const FoundDevice &found) { return std::make_unique<WatchTask>(found, world); };
}
