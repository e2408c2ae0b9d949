// Test engine. Behaviour comes from the environment:
//   TESTENGINE_SCRIPT  a script file, or the script itself after "inline:"
//   TESTENGINE_ARGS    a file that receives the arguments, one per line
//   MORVANE_STOP_EVENT the stop event's name (default "/MorvaneStopEvent")
// or from "--script FILE" on the command line for manual runs.
//
// Script lines:
//   out TEXT             print TEXT; \n \r \t \\ and \xHH are unescaped
//   sleep MS             wait without looking at the stop event
//   waitstop MS          wait up to MS for the stop event; when it comes,
//                        print "Stopped" and exit 0
//   ticks N MS TEXT      print "TEXT <i>" N times, MS apart, honouring the stop event
//   flood BYTES          print BYTES of engine-like output
//   exit CODE            exit with CODE
//   crash                die from a signal
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <semaphore.h>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

sem_t *stopEvent()
{
    static sem_t *event = [] {
        const char *name = std::getenv("MORVANE_STOP_EVENT");
        sem_t *s = sem_open(name && *name ? name : "/MorvaneStopEvent", O_CREAT, 0600, 0);
        return s == SEM_FAILED ? nullptr : s;
    }();
    return event;
}

bool stopRequested()
{
    sem_t *event = stopEvent();
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
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        if (c == 'n')
            out += '\n';
        else if (c == 'r')
            out += '\r';
        else if (c == 't')
            out += '\t';
        else if (c == 'x' && i + 2 < text.size() + 1) {
            out += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else
            out += c;
    }
    return out;
}

void sleepMs(long ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

[[noreturn]] void stopped()
{
    write("Stopped\n");
    std::exit(0);
}

void flood(long long bytes)
{
    std::string block;
    long long written = 0;
    long line = 0;
    while (written < bytes) {
        block.clear();
        while (block.size() < 65536) {
            ++line;
            if (line % 20 == 1)
                block += "Converting script (\"/data/in/script" + std::to_string(line / 20)
                         + ".sql\") to PostgreSQL\n";
            else if (line % 50 == 0)
                block += "line " + std::to_string(line % 1000) + " - unexpected token 'GO'\n";
            else
                block += "  statement " + std::to_string(line) + " converted without remarks\n";
        }
        written += static_cast<long long>(block.size());
        write(block);
    }
}

} // namespace

int main(int argc, char **argv)
{
    std::string script;
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--script") == 0 && i + 1 < argc) {
            script = std::string("file:") + argv[++i];
            continue;
        }
        arguments.push_back(argv[i]);
    }
    if (const char *argsFile = std::getenv("TESTENGINE_ARGS")) {
        std::ofstream out(argsFile, std::ios::trunc);
        for (const std::string &argument : arguments)
            out << argument << '\n';
    }
    if (script.empty()) {
        const char *env = std::getenv("TESTENGINE_SCRIPT");
        if (env)
            script = std::strncmp(env, "inline:", 7) == 0 ? std::string(env) : "file:" + std::string(env);
    }
    std::string text;
    if (script.rfind("inline:", 0) == 0) {
        text = script.substr(7);
    } else if (script.rfind("file:", 0) == 0) {
        std::ifstream in(script.substr(5));
        std::stringstream buffer;
        buffer << in.rdbuf();
        text = buffer.str();
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
            sleepMs(std::atol(rest.c_str()));
        } else if (command == "waitstop") {
            const long total = std::atol(rest.c_str());
            for (long waited = 0; waited < total; waited += 10) {
                if (stopRequested())
                    stopped();
                sleepMs(10);
            }
        } else if (command == "ticks") {
            std::istringstream parts(rest);
            long count = 0, ms = 0;
            parts >> count >> ms;
            std::string label;
            std::getline(parts, label);
            if (!label.empty() && label[0] == ' ')
                label.erase(0, 1);
            for (long i = 0; i < count; ++i) {
                if (stopRequested())
                    stopped();
                write(label + " " + std::to_string(i) + "\n");
                sleepMs(ms);
            }
        } else if (command == "flood") {
            flood(std::atoll(rest.c_str()));
        } else if (command == "exit") {
            return std::atoi(rest.c_str());
        } else if (command == "crash") {
            // A sanitizer's own handler would turn the signal into an exit.
            std::signal(SIGSEGV, SIG_DFL);
            std::raise(SIGSEGV);
            std::abort();
        }
    }
    return 0;
}
