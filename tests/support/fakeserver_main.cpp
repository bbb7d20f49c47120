// The program behind FakeServer: plays the script beside it, <own path>.script, one step a line.
//
//   print TEXT       writes TEXT to standard output; \n is a line feed, nothing else is added
//   complain TEXT    the same to standard error
//   flood N          writes N bytes to standard output
//   await TEXT       reads standard input until TEXT has come
//   await-end        reads standard input to its end
//   note NAME        creates <own path>.NAME, which holds all input so far
//   exit N           ends with this code
//   crash            ends by a signal
//   linger           stays until it is killed
//
// After the last step it ends with code 0. It ends with the test, whatever happens.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

std::string input; // all received input

std::string unescaped(std::string text)
{
    for (std::size_t at = text.find("\\n"); at != std::string::npos; at = text.find("\\n", at))
        text.replace(at, 2, 1, '\n');
    return text;
}

bool readMore()
{
    char bytes[256];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0)
        return false;
    input.append(bytes, static_cast<std::size_t>(count));
    return true;
}

void writeAll(int file, const std::string& text)
{
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = ::write(file, text.data() + done, text.size() - done);
        if (count < 0)
            std::exit(90);
        done += static_cast<std::size_t>(count);
    }
}

void await(const std::string& text)
{
    std::size_t found = input.find(text);
    while (found == std::string::npos) {
        if (!readMore())
            std::exit(91);
        found = input.find(text);
    }
}

// Complete when it appears: the reader looks for the name.
void note(const std::string& path)
{
    std::ofstream(path + ".part") << input;
    std::rename((path + ".part").c_str(), path.c_str());
}

void play(const std::string& step, const std::string& argument, const std::string& ownPath)
{
    if (step == "print")
        writeAll(STDOUT_FILENO, unescaped(argument));
    else if (step == "complain")
        writeAll(STDERR_FILENO, unescaped(argument));
    else if (step == "flood")
        writeAll(STDOUT_FILENO, std::string(std::stoul(argument), 'x'));
    else if (step == "await")
        await(unescaped(argument));
    else if (step == "await-end")
        while (readMore()) { }
    else if (step == "note")
        note(ownPath + "." + argument);
    else if (step == "exit")
        std::_Exit(std::stoi(argument));
    else if (step == "crash")
        ::raise(SIGKILL);
    else if (step == "linger")
        while (true)
            ::pause();
    else
        std::_Exit(92);
}

} // namespace

int main(int, char** arguments)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string ownPath = arguments[0];
    std::ifstream script(ownPath + ".script");
    for (std::string line; std::getline(script, line);) {
        const std::size_t blank = line.find(' ');
        play(line.substr(0, blank), blank == std::string::npos ? std::string() : line.substr(blank + 1), ownPath);
    }
    return 0;
}
