#pragma once

#include "output/Output.h"

/// The program's standard output. Throws ReaderGone, or a Failure that gives the system's reason.
class StandardOutput : public Output {
protected:
    void send(std::string_view piece) override;
};
