#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"
#include "input/Recording.h"
#include "output/Failure.h"
#include "output/printable.h"

/// Loads what a command is to work on. A note names what is readable because of --force alone. Throws a Failure.
Recording loadEntry(const Entry& entry, const Request& request, Job& out);

/// Does some work on what an entry stands for; a Failure names that.
template <class Work> auto naming(const Entry& entry, const Work& work) {
    try {
        return work();
    } catch (const Failure& failure) {
        throw Failure(failure.status, shownPath(entry.path) + ": " + failure.what());
    }
}
