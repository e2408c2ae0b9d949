// Test engine. Behaviour comes from the environment:
//   TESTENGINE_SCRIPT  the script, after "inline:"
//   TESTENGINE_ARGS    a file that receives the arguments, one per line
//   TESTENGINE_STDIN   a file that receives what the engine read on its
//                      standard input (read to its end before the script runs)
//   MORVANE_STOP_EVENT the stop event's name (default "/MorvaneStopEvent")
//
// Script lines:
//   out TEXT             print TEXT; \n \r and \xHH are unescaped
//   sleep MS             wait without looking at the stop event
//   ticks N MS TEXT      print "TEXT <i>" N times, MS apart; on the stop event
//                        print "Stopped" and exit 0
//   lines N [MS]         print N lines of engine-like output: a script line
//                        every 20 lines, an error in two scripts of five;
//                        MS milliseconds of work after every 1000 lines
//   exit CODE            exit with CODE
//   crash                die from a signal
//   child FILE           start a child process that sleeps a minute; its
//                        process id goes to FILE
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <iterator>
#include <semaphore.h>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

bool stopRequested()
{
    static sem_t *event = [] {
        const char *name = std::getenv("MORVANE_STOP_EVENT");
        sem_t *s = sem_open(name && *name ? name : "/MorvaneStopEvent", O_CREAT, 0600, 0);
        return s == SEM_FAILED ? nullptr : s;
    }();
    return event && sem_trywait(event) == 0;
}

void write(const std::string &text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

std::string unescape(const std::string &text)
{
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i] == '\\' && i + 1 < text.size() ? text[++i] : '\0';
        if (c == '\0')
            out += text[i];
        else if (c == 'x') {
            out += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else
            out += c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return out;
}

void printLines(long count, long pause)
{
    std::string block;
    for (long line = 0; line < count; ++line) {
        const long script = line / 20;
        if (line % 20 == 0)
            block += "Converting script (\"/data/in/script" + std::to_string(script) + ".sql\") to PostgreSQL\n";
        else if (line % 20 == 9 && script % 5 < 2)
            block += "line 9 - unexpected token 'GO'\n";
        else
            block += "  statement " + std::to_string(line) + " converted without remarks\n";
        if (block.size() > 60000 || (pause > 0 && line % 1000 == 999)) {
            write(block);
            block.clear();
        }
        if (pause > 0 && line % 1000 == 999)
            std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    }
    write(block);
}

} // namespace

int main(int argc, char **argv)
{
    if (const char *argsFile = std::getenv("TESTENGINE_ARGS")) {
        std::ofstream out(argsFile, std::ios::trunc);
        for (int i = 1; i < argc; ++i)
            out << argv[i] << '\n';
    }
    if (const char *inputFile = std::getenv("TESTENGINE_STDIN")) {
        std::string input((std::istreambuf_iterator<char>(std::cin)), std::istreambuf_iterator<char>());
        std::ofstream(inputFile, std::ios::trunc) << input;
    }
    const char *script = std::getenv("TESTENGINE_SCRIPT");
    std::string text;
    if (script && std::strncmp(script, "inline:", 7) == 0) {
        text = script + 7;
    }
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        const size_t space = line.find(' ');
        const std::string command = line.substr(0, space);
        const std::string rest = space == std::string::npos ? std::string() : line.substr(space + 1);
        if (command == "out") {
            write(unescape(rest));
        } else if (command == "sleep") {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::atol(rest.c_str())));
        } else if (command == "ticks") {
            std::istringstream parts(rest);
            long count = 0, ms = 0;
            std::string label;
            parts >> count >> ms >> std::ws;
            std::getline(parts, label);
            for (long i = 0; i < count; ++i) {
                if (stopRequested()) {
                    write("Stopped\n");
                    return 0;
                }
                write(label + " " + std::to_string(i) + "\n");
                std::this_thread::sleep_for(std::chrono::milliseconds(ms));
            }
        } else if (command == "lines") {
            std::istringstream parts(rest);
            long count = 0, pause = 0;
            parts >> count >> pause;
            printLines(count, pause);
        } else if (command == "exit") {
            return std::atoi(rest.c_str());
        } else if (command == "child") {
            const pid_t child = fork();
            if (child == 0) {
                execlp("sleep", "sleep", "60", static_cast<char *>(nullptr));
                _exit(127);
            }
            std::ofstream(rest, std::ios::trunc) << child << '\n';
        } else if (command == "crash") {
            // A sanitizer's own handler would turn the signal into an exit.
            std::signal(SIGSEGV, SIG_DFL);
            std::raise(SIGSEGV);
            std::abort();
        }
    }
    return 0;
}
