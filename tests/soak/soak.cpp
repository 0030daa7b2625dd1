#include "soak.h"

#include "event_wait.h"
#include "live_objects.h"
#include "resources.h"

#include <QComboBox>
#include <QFile>
#include <QHash>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

using namespace std::chrono_literals;

namespace {
/// All of it, in 24 hours' share.
constexpr double wholeShare = 24;
constexpr int readBacks = 10'000;
constexpr int connections = 1'000;
constexpr int wizardRuns = 1'000;
constexpr double bytesOfAnHour = 3600.0 * 11'520; // at the speed of the line
constexpr int bytesAtOnce = 2'000'000;
constexpr int bytesOfAFullTerminal = 110'000 * 62; // lines of the simulator's text

constexpr auto longestOfAll = 120s; // on a machine that is busy with others
constexpr auto patience = 3s;       // before a button is pressed because nothing came
constexpr int leastTimes = 40;      // so that one more each time is beyond every bound below
constexpr int leastTexts = 6;
constexpr int mostTexts = 60; // a busy machine drops most of what comes at once over UDP
constexpr int dialogsOfAWizard = 4;

/// What may be more at the end than in the middle, and in the middle than at the start. The
/// terminal drops its oldest 10,000 lines at a time, and so holds more or less of them.
constexpr qint64 memoryOfMost = 3 * 1024;  // KiB
constexpr qint64 memoryOfText = 12 * 1024; // KiB
constexpr int moreFiles = 1;
constexpr int moreObjects = 8;
constexpr int moreTimers = 4;

int timesOf(int whole, double share, int least = leastTimes)
{
    return std::max(least, static_cast<int>(whole * share));
}

/// Shorter than the walk's times, on lines that carry an answer at once.
WindowSettings shortSettings()
{
    using std::chrono::milliseconds;
    WindowSettings settings = User::quickSettings();
    settings.panel.handshakeWatchdog = milliseconds(10'000);
    settings.readBack.takeOver = milliseconds(25);
    settings.readBack.refreshDisable = milliseconds(1);
    settings.readBack.refreshEnable = milliseconds(10);
    return settings;
}
} // namespace

Soak::Soak(Road road, const QDir &folder, double hours)
    : road_(road), share_(hours / wholeShare), desk_(road, folder), answers_(road, desk_, folder),
      user_(desk_, watch_, answers_, folder, shortSettings())
{
    answers_.setObliging(true);
}

Soak::~Soak() = default;

bool Soak::leak(const QByteArray &kind)
{
    static const QHash<QByteArray, Leak> kinds = {{"memory", Leak::Memory},
                                                  {"files", Leak::File},
                                                  {"objects", Leak::Object},
                                                  {"timers", Leak::Timer}};
    leak_ = kinds.value(kind, Leak::None);
    return leak_ != Leak::None;
}

void Soak::keepSomething()
{
    constexpr int muchMemory = 1'500'000; // bytes
    std::unique_ptr<QObject> kept;
    switch (leak_) {
    case Leak::None:
        return;
    case Leak::Memory:
        keptBytes_.append(QByteArray(muchMemory, 'x'));
        return;
    case Leak::File: {
        auto file = std::make_unique<QFile>(QStringLiteral("/dev/null"));
        if (!file->open(QIODevice::ReadOnly))
            qFatal("/dev/null cannot be opened");
        kept = std::move(file);
        break;
    }
    case Leak::Object:
        kept = std::make_unique<QObject>();
        break;
    case Leak::Timer: {
        auto timer = std::make_unique<QTimer>();
        timer->start(1h);
        kept = std::move(timer);
        break;
    }
    }
    keptObjects_.push_back(std::move(kept));
}

int Soak::run()
{
    const QString problem = desk_.start();
    if (!problem.isEmpty()) {
        std::printf("FAILED       %s\n", qPrintable(problem));
        return 1;
    }
    user_.openWindow();
    if (road_ == Road::Serial)
        user_.choose("comboBox_SelectPort", 1); // the line that is as fast as it is read
    bool good = waitForRead();
    if (!good)
        std::printf("FAILED       the window does not find the switch\n");
    good = good && inATurn([this] { return fillTerminal(); });
    good = good && repeat("read-backs", timesOf(readBacks, share_), memoryOfText,
                          [this] { return readBack(); });
    if (good && road_ == Road::Serial)
        good = repeat("times 2 MB of text",
                      timesOf(1, share_ * wholeShare * bytesOfAnHour / bytesAtOnce, leastTexts),
                      memoryOfText, [this] { return hearText() >= bytesAtOnce / 100 * 95; });
    good = good && repeat("connections", timesOf(connections, share_), memoryOfMost,
                          [this] { return connectAnew(); });
    if (good && road_ == Road::Udp)
        good = repeat("wizard runs", timesOf(wizardRuns, share_), memoryOfMost,
                      [this] { return runWizard(); });
    if (good && !agrees())
        good = false;
    user_.closeWindow();
    return good ? 0 : 1;
}

bool Soak::repeat(const char *what, int times, qint64 memoryBound,
                  const std::function<bool()> &once)
{
    QList<Sample> samples;
    const int stride = std::max(1, times / 10);
    for (int done = 1; done <= times; ++done) {
        if (!inATurn(once)) {
            std::printf("FAILED       %s: number %d did not come to its end; %s\n"
                        "             the terminal ends in \"%s\"\n",
                        what, done, qPrintable(DialogAnswers::shown()),
                        qPrintable(user_.lastLine()));
            return false;
        }
        keepSomething();
        if (done == stride || done == (times + stride) / 2 || done == times)
            samples.append(sample());
    }
    return judge(what, times, memoryBound, samples);
}

/// In a turn of the event loop that ends with it, as everything that a user does: what is to be
/// deleted later is deleted then.
bool Soak::inATurn(const std::function<bool()> &once)
{
    std::optional<bool> good;
    QTimer::singleShot(0, [&] { good = once(); });
    waitUntil([&] { return good.has_value(); }, std::chrono::hours(1));
    return good.value_or(false);
}

bool Soak::judge(const char *what, int times, qint64 memoryBound,
                 const QList<Sample> &samples) const
{
    std::printf("%-6s %7d %s\n", nameOf(road_), times, what);
    for (const Sample &each : samples)
        std::printf("               memory %lld KiB, open files %d, objects %d, timers %d\n",
                    static_cast<long long>(each.memory), each.files, each.objects, each.timers);
    const Sample &start = samples.first();
    const Sample &middle = samples.at(samples.size() / 2);
    const Sample &end = samples.last();
    const auto rises = [&](const char *of, qint64 first, qint64 second, qint64 third,
                           qint64 bound) {
        if (second - first <= bound && third - second <= bound)
            return false;
        std::printf("FAILED       %s rise with every one of the %s\n", of, what);
        return true;
    };
    const bool memoryRises =
        isResidentMemoryOurs() &&
        rises("kilobytes", start.memory, middle.memory, end.memory, memoryBound);
    const bool filesRise = rises("open files", start.files, middle.files, end.files, moreFiles);
    const bool objectsRise =
        rises("objects", start.objects, middle.objects, end.objects, moreObjects);
    const bool timersRise = rises("timers", start.timers, middle.timers, end.timers, moreTimers);
    std::fflush(stdout);
    return !memoryRises && !filesRise && !objectsRise && !timersRise;
}

Soak::Sample Soak::sample()
{
    waitUntil([] { return false; }, 50ms); // what is to be deleted later is gone by then
    return {residentKiB(), openFiles(), live_objects::objects(), live_objects::timers()};
}

bool Soak::isRead() const
{
    constexpr int itemsOnceRead = 13;
    const auto *resolutions = user_.window().findChild<QComboBox *>(
        QStringLiteral("comboBox_mouse_movement_resolution_setting_1"));
    return resolutions->count() == itemsOnceRead && user_.isGreen() &&
           user_.isEnabled("pushButton_Refresh");
}

bool Soak::waitForRead()
{
    return waitUntil([this] { return isRead(); }, longestOfAll);
}

bool Soak::readBack()
{
    return user_.press("pushButton_Refresh") && waitForRead();
}

bool Soak::connectAnew()
{
    return user_.press("pushButton_OFF_Connection") && !user_.isGreen() &&
           user_.press("pushButton_ON_Connection") && waitForRead();
}

bool Soak::runWizard()
{
    answers_.follow(1);
    const int answeredBefore = answers_.answered();
    return user_.press("pushButton_Connection_Settings") && waitForRead() &&
           answers_.answered() - answeredBefore >= dialogsOfAWizard;
}

bool Soak::fillTerminal()
{
    qint64 heard = 0;
    for (int times = 1; times <= mostTexts; ++times) {
        const qint64 more = hearText();
        heard += more;
        if (heard >= bytesOfAFullTerminal)
            return true;
        if (more == 0)
            break;
    }
    std::printf("FAILED       of the switch's text came %lld characters where %d were awaited\n"
                "             the terminal ends in \"%s\"\n",
                static_cast<long long>(heard), bytesOfAFullTerminal, qPrintable(user_.lastLine()));
    return false;
}

/// Two megabytes, and the answer to a button behind them that says they have been read. Behind so
/// much text datagrams are lost on a busy machine: the end of a line, or the answer, after which
/// the buzzer's other button is pressed, as its user would.
qint64 Soak::hearText()
{
    const auto *terminal =
        user_.window().findChild<QTextEdit *>(QStringLiteral("textEdit_Main_Terminal"));
    qint64 heard = 0;
    QObject context;
    QObject::connect(terminal->document(), &QTextDocument::contentsChange, &context,
                     [&heard](int, int, int added) { heard += added; });
    const QByteArray unit = QByteArray::number(user_.chosenUnit());
    const QByteArray bytes = QByteArray::number(bytesAtOnce);
    desk_.obey(readStep("flood " + unit + " " + bytes));
    (void)desk_.look(); // it has begun by then
    const auto once = road_ == Road::Udp ? patience : longestOfAll;
    for (auto waited = 0s; waited < longestOfAll; waited += once) {
        const bool turnsOn = user_.isEnabled("pushButton_ON_Beep");
        user_.press(turnsOn ? "pushButton_ON_Beep" : "pushButton_OFF_Beep");
        const QString answer = turnsOn ? QStringLiteral("Beep on") : QStringLiteral("Beep off");
        if (waitUntil([&] { return user_.lastLine().endsWith(answer); }, once))
            return heard;
    }
    return 0;
}

/// After all that the window still shows what the switch has.
bool Soak::agrees()
{
    if (!readBack())
        return false;
    const QList<SwitchPicture> seen = desk_.look();
    QString difference;
    const auto same = [&] {
        difference = differenceToWindow(seen.value(user_.chosenUnit() - 1), user_.window());
        return difference.isEmpty();
    };
    if (waitUntil(same, 2s))
        return true;
    std::printf("FAILED       %s\n", qPrintable(difference));
    return false;
}
