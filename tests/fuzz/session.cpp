#include "property.h"
#include "session/switch_session.h"
#include "simulator/switch_model.h"
#include "switch_sight.h"

#include <QCoreApplication>

using namespace std::chrono_literals;

namespace {
/// A road whose other end is the target's: it says what the target says, or what a switch answers.
class HandLink : public SwitchLink
{
public:
    Road road() const override { return Road::Serial; }
    void open() override
    {
        isOpen_ = true;
        Q_EMIT opened();
    }
    bool isOpen() const override { return isOpen_; }
    void write(const QByteArray &bytes) override
    {
        if (device)
            say(joined(device->receive(bytes)));
    }
    void close() override { isOpen_ = false; }

    void say(const QByteArray &bytes)
    {
        if (!bytes.isEmpty())
            Q_EMIT received(bytes);
    }

    SwitchModel *device = nullptr; ///< hears what is written, from when it is there

private:
    bool isOpen_ = false;
};

/// What came of a question.
struct Ending
{
    int answers = 0;
    int failures = 0;
    ConfigurationReading reading;
    SessionError::Kind error = SessionError::Kind::CannotOpen;

    bool operator==(const Ending &) const = default;
};

/// A conversation in which nothing is waited for: times are up as soon as all has been said.
class Conversation
{
public:
    Conversation()
    {
        auto link = std::make_unique<HandLink>();
        link_ = link.get();
        session_ = std::make_unique<SwitchSession>(
            std::move(link), SwitchSession::Timing{0ms, 0ms, 0ms, 0, 0ms, 0ms});
        QObject::connect(session_.get(), &SwitchSession::answered, session_.get(),
                         [this](const ConfigurationReading &reading) {
                             ++ending_.answers;
                             ending_.reading = reading;
                         });
        QObject::connect(session_.get(), &SwitchSession::failed, session_.get(),
                         [this](const SessionError &error) {
                             ++ending_.failures;
                             ending_.error = error.kind;
                         });
        session_->open();
    }

    /// Asks, hears `pieces` and waits for the end.
    Ending hear(const std::vector<QByteArray> &pieces)
    {
        ending_ = {};
        session_->ask();
        for (const QByteArray &piece : pieces)
            link_->say(piece);
        return waitForEnd();
    }

    /// Asks `device`, which answers at once.
    Ending ask(SwitchModel &device)
    {
        ending_ = {};
        link_->device = &device;
        session_->ask();
        return waitForEnd();
    }

private:
    Ending waitForEnd()
    {
        constexpr int longEnough = 1000000;
        for (int turn = 0; turn < longEnough && session_->isBusy(); ++turn)
            QCoreApplication::processEvents();
        require(!session_->isBusy(), "every question comes to its end");
        require(ending_.answers + ending_.failures == 1, "a question ends in one way");
        return ending_;
    }

    std::unique_ptr<SwitchSession> session_;
    HandLink *link_ = nullptr;
    Ending ending_;
};

/// `text` in pieces: each as long as the bits of `cut` and where it begins say.
std::vector<QByteArray> piecesOf(const QByteArray &text, int cut)
{
    std::vector<QByteArray> pieces;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype size = 1 + (at * 7 + cut) % (1 + cut);
        pieces.push_back(text.mid(at, size));
        at += size;
    }
    return pieces;
}
} // namespace

/// The first byte says how the rest, a stream from a switch, is cut into pieces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_session";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication app(argc, argv);

    Choices choices(data, size);
    const int cut = choices.byte();
    constexpr std::size_t longest = 1000; // two whole answers; what is longer says nothing new
    const QByteArray stream = QByteArray::fromStdString(choices.rest().substr(0, longest));

    Conversation whole;
    Conversation inPieces;
    const Ending uncut = whole.hear({stream});
    require(inPieces.hear(piecesOf(stream, cut)) == uncut,
            "a stream in pieces gives what the whole one gives");
    if (uncut.answers == 1)
        require(uncut.reading == readConfiguration(stream.toStdString()),
                "an answer is what its text says");

    SwitchModel device;
    const Ending later = inPieces.ask(device);
    require(later.answers == 1, "a switch that answers again is understood, whatever was before");
    requireTells(later.reading.configuration, device.state());
    return 0;
}
