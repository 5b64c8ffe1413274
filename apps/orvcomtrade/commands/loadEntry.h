#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"
#include "input/Recording.h"
#include "output/Failure.h"
#include "output/printable.h"

/// Loads the recording of an entry. Adds a note if it is readable only because of --force. Throws a Failure.
Recording loadEntry(const Entry& entry, const Request& request, Job& out);

/// Does some work on an entry. A Failure that it throws gets the path of the entry.
template <class Work> auto naming(const Entry& entry, const Work& work) {
    try {
        return work();
    } catch (const Failure& failure) {
        throw Failure(failure.status, shownPath(entry.path) + ": " + failure.what());
    }
}
