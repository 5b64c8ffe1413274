#pragma once

#include <stdexcept>
#include <string>

/// Exit statuses of the program beside 0.
constexpr int kRecordingProblem = 1;
constexpr int kWrongUsage = 2;

/// Ends the program with a sentence for the user and an exit status.
class Failure : public std::runtime_error {
public:
    Failure(int exitStatus, const std::string& sentence) : std::runtime_error(sentence), status(exitStatus) {}

    int status;
};
