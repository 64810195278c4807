#pragma once

#include "VarnicCore/Files/FileDescriptor.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace varnic {

/// A program that runs as long as the object lives, or until it ends by itself.
class ChildProgram {
public:
    /// `words` begin with the program's name. Throws std::runtime_error when it can't be started.
    explicit ChildProgram(std::vector<std::string> words);
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;
    ~ChildProgram();

    /// The next line of its output, without the end; empty when there is no more. Waits for it.
    std::string readLine();

    /// Gives it something to read.
    void write(const std::string& text) const;

    void signal(int number) const;

    /// Ends its input and waits for its own end; the exit code, or minus the signal that ended it.
    int wait();

private:
    pid_t process_ = -1;
    FileDescriptor input_ = FileDescriptor(-1);
    FileDescriptor output_ = FileDescriptor(-1);
};

/// Runs a program to its end; its exit code.
int runProgram(std::vector<std::string> words);

/// An environment variable that is set, or with nothing unset, as long as the object lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const char* value);
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable();

private:
    std::string name_;
    std::string before_;
    bool wasSet_ = false;
};

} // namespace varnic
