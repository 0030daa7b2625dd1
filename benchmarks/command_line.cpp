// peloractl as a whole process: its start beside an empty program, many switches at once, and one
// answer at the speed of the serial line.
//   bench_command_line start RUNS | fleet LIST NUMBER | line RUNS

#include "simulator/serial_line.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace {
using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

double milliseconds(const timeval &time)
{
    return 1000.0 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1000.0;
}

[[noreturn]] void giveUp(const char *why)
{
    std::perror(why);
    std::exit(1);
}

/// A process that has ended.
struct Run
{
    double wall = 0;   ///< ms
    double cpu = 0;    ///< ms of user and system time
    double memory = 0; ///< MB at its peak
    Clock::time_point end;
};

pid_t start(const std::vector<std::string> &words)
{
    const pid_t process = ::fork();
    if (process < 0)
        giveUp("fork");
    if (process > 0)
        return process;
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDOUT_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
    std::vector<char *> arguments;
    for (const std::string &word : words)
        arguments.push_back(const_cast<char *>(word.c_str())); // NOLINT: execv takes it so
    arguments.push_back(nullptr);
    ::execv(arguments.front(), arguments.data());
    std::_Exit(127);
}

Run waitFor(pid_t process, Clock::time_point begin)
{
    int status = 0;
    rusage usage = {};
    if (::wait4(process, &status, 0, &usage) != process)
        giveUp("wait4");
    const Clock::time_point end = Clock::now();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "the measured program ended with %d\n", status);
        std::exit(1);
    }
    return {milliseconds(end - begin), milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024.0, end};
}

Run run(const std::vector<std::string> &words)
{
    const Clock::time_point begin = Clock::now();
    return waitFor(start(words), begin);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

std::string beside(const std::string &program, const char *name)
{
    return program.substr(0, program.rfind('/') + 1) + name;
}

void measureStart(const std::string &self, int runs)
{
    std::vector<double> tool;
    std::vector<double> empty;
    for (int i = 0; i < runs; ++i) { // in turn, so that both meet the same machine
        tool.push_back(run({beside(self, "peloractl"), "--version"}).wall);
        empty.push_back(run({beside(self, "bench_empty_core")}).wall);
    }
    std::printf("peloractl --version, median of %d: %.1f ms; an empty Qt Core program: %.1f ms; "
                "ratio %.2f\n",
                runs, median(tool), median(empty), median(tool) / median(empty));
}

void measureFleet(const std::string &self, const std::string &list, int number)
{
    const Run done = run({beside(self, "peloractl"), "--devices", list, "get"});
    std::printf("%4d switches over UDP, read: %7.1f ms, %.3f ms of CPU per switch, %.1f MB at the "
                "peak\n",
                number, done.wall, done.cpu / number, done.memory);
}

constexpr std::string_view answer = "//RL Pelora KM switch\nKM Port Limit: 4\n"
                                    "KM Cursor Rolling: Disabled\n"
                                    "KM tracking mode: Absolute Mouse Mode\n"
                                    "Channels resolution: 1 1 1 1\nBuzzer: on\n"
                                    "C1\t100 100 CUSTOM1\nC2\t100 100 CUSTOM2\n"
                                    "C3\t100 100 CUSTOM3\nC4\t100 100 CUSTOM4\n"
                                    "Current Hotkey Trigger: Left Ctrl\nCurrent KM Control: 1\n"
                                    "Current USB Control 1\n//FF01B01FF02B02FF03B03FF04B04\n";

/// The side of the switch of a virtual serial port.
class Line
{
public:
    Line() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0)
            giveUp("no virtual port");
        path_ = ::ptsname(master_);
        held_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        termios settings = {};
        ::tcgetattr(held_, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(held_, TCSANOW, &settings);
    }
    ~Line()
    {
        ::close(held_);
        ::close(master_);
    }
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;

    const std::string &path() const { return path_; }

    void waitForQuestions() const
    {
        std::string heard;
        while (heard.find("//BP\r") == std::string::npos) {
            char bytes[256];
            const ssize_t size = ::read(master_, bytes, sizeof bytes);
            if (size <= 0)
                giveUp("the line is gone");
            heard.append(bytes, static_cast<std::size_t>(size));
        }
    }

    /// Says the answer as fast as a line carries it; returns when its last byte was there.
    Clock::time_point answerAtLineSpeed() const
    {
        const Clock::time_point begin = Clock::now();
        constexpr double bytesPerMs = lineBytesPerSecond / 1000.0;
        for (std::size_t said = 0; said < answer.size();) {
            ::poll(nullptr, 0, 1);
            const auto due =
                static_cast<std::size_t>(milliseconds(Clock::now() - begin) * bytesPerMs);
            const std::size_t piece = std::min(due, answer.size()) - said;
            if (piece > 0 && ::write(master_, answer.data() + said, piece) < 0)
                giveUp("the line is gone");
            said += piece;
        }
        return Clock::now();
    }

private:
    int master_;
    int held_ = -1; ///< so that the port outlives whoever closes it
    std::string path_;
};

void measureLine(const std::string &self, int runs)
{
    std::vector<double> rests;
    for (int i = 0; i < runs; ++i) {
        const Line line;
        const Clock::time_point begin = Clock::now();
        const pid_t process =
            start({beside(self, "peloractl"), "--device", "serial:" + line.path(), "get"});
        line.waitForQuestions();
        const Clock::time_point lastByte = line.answerAtLineSpeed();
        rests.push_back(milliseconds(waitFor(process, begin).end - lastByte));
    }
    std::printf("one switch at 115200 baud, from the answer's last byte to peloractl's end, median "
                "of %d: %.1f ms, longest %.1f ms\n",
                runs, median(rests), *std::max_element(rests.begin(), rests.end()));
}
} // namespace

int main(int argc, char *argv[])
{
    const std::vector<std::string> words(argv, argv + argc);
    if (argc == 3 && words[1] == "start")
        measureStart(words[0], std::stoi(words[2]));
    else if (argc == 4 && words[1] == "fleet")
        measureFleet(words[0], words[2], std::stoi(words[3]));
    else if (argc == 3 && words[1] == "line")
        measureLine(words[0], std::stoi(words[2]));
    else
        return 2;
    return 0;
}
