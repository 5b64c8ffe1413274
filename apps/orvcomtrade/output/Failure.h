#pragma once

#include <stdexcept>
#include <string>
#include <utility>

/// Exit statuses of the program other than 0.
constexpr int kRecordingProblem = 1;
constexpr int kWrongUsage = 2;

/// Ends the program with a sentence for the user and an exit status.
class Failure : public std::runtime_error {
public:
    Failure(int exitStatus, const std::string& sentence) : std::runtime_error(sentence), status(exitStatus) {}

    int status;
};

/// A file is not a recording. If a search found the file, that is only worth a note, not a failure.
class NotARecording : public Failure {
public:
    NotARecording(const std::string& sentence, std::string noteOnIt)
        : Failure(kRecordingProblem, sentence), note(std::move(noteOnIt)) {}

    std::string note;
};

/// The program does not understand the command line. Adds to the sentence where help is.
class WrongWords : public Failure {
public:
    explicit WrongWords(const std::string& sentence, const std::string& command = {})
        : Failure(kWrongUsage, sentence + "\nTry orvcomtrade " + command + (command.empty() ? "" : " ") + "--help.") {}
};
