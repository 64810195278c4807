#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace varnic {

ChildProgram::ChildProgram(std::vector<std::string> words) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    input_ = FileDescriptor(in[1]);
    output_ = FileDescriptor(out[0]);
    const FileDescriptor read(in[0]);
    const FileDescriptor written(out[1]);
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    process_ = ::fork();
    if (process_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // Nothing is left behind by a test that crashes.
        ::dup2(read.number(), STDIN_FILENO);
        ::dup2(written.number(), STDOUT_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
}

ChildProgram::~ChildProgram() {
    if (process_ > 0) {
        signal(SIGKILL);
        wait();
    }
}

std::string ChildProgram::readLine() {
    std::string line;
    char byte = 0;
    while (::read(output_.number(), &byte, 1) == 1 && byte != '\n') {
        line.push_back(byte);
    }
    return line;
}

void ChildProgram::write(const std::string& text) const {
    if (::write(input_.number(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the program doesn't read");
    }
}

void ChildProgram::signal(int number) const {
    ::kill(process_, number);
}

int ChildProgram::wait() {
    input_ = FileDescriptor(-1);
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int runProgram(std::vector<std::string> words) {
    return ChildProgram(std::move(words)).wait();
}

EnvironmentVariable::EnvironmentVariable(std::string name, const char* value) : name_(std::move(name)) {
    if (const char* before = std::getenv(name_.c_str())) {
        wasSet_ = true;
        before_ = before;
    }
    value == nullptr ? ::unsetenv(name_.c_str()) : ::setenv(name_.c_str(), value, 1);
}

EnvironmentVariable::~EnvironmentVariable() {
    wasSet_ ? ::setenv(name_.c_str(), before_.c_str(), 1) : ::unsetenv(name_.c_str());
}

} // namespace varnic
