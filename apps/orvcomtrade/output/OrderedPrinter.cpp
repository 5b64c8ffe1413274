#include "output/OrderedPrinter.h"

#include "output/Failure.h"
#include "output/writeWhole.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::size_t kMostKept = 256UL * 1024; // bytes that a job writes before its turn

} // namespace

OrderedPrinter::OrderedPrinter(std::size_t count, std::size_t window, bool endsWithReader, std::string heading,
                               Progress& progress)
    : _count(count), _window(window), _endsWithReader(endsWithReader), _heading(std::move(heading)),
      _progress(progress) {}

bool OrderedPrinter::admit(std::size_t job) {
    std::unique_lock<std::mutex> lock(_mutex);
    _changed.wait(lock, [this, job] { return _failure || job < _head + _window; });
    return !_failure;
}

bool OrderedPrinter::_mayWrite(std::size_t job) {
    return _failure || job == _head;
}

void OrderedPrinter::write(std::size_t job, std::string_view text) {
    std::unique_lock<std::mutex> lock(_mutex);
    Slot& slot = _slots[job];
    if (!_mayWrite(job) && slot.text.size() + text.size() <= kMostKept) {
        slot.text += text;
        return;
    }
    _changed.wait(lock, [this, job] { return _mayWrite(job); });
    _print(std::exchange(slot.text, {}));
    _print(text);
    if (_failure) {
        throw Stopped();
    }
}

void OrderedPrinter::finish(std::size_t job, std::string notes, int status) {
    const std::lock_guard<std::mutex> lock(_mutex);
    Slot& slot = _slots[job];
    slot.notes = std::move(notes);
    slot.status = status;
    slot.finished = true;
    _printFinished();
    _changed.notify_all();
}

void OrderedPrinter::_printFinished() {
    for (auto slot = _slots.find(_head); slot != _slots.end() && slot->second.finished && !_failure;
         slot = _slots.find(_head)) {
        _print(slot->second.text);
        if (!slot->second.notes.empty()) {
            const auto quiet = _progress.hide();
            _status = writeWhole(STDERR_FILENO, slot->second.notes) ? _status : kRecordingProblem;
        }
        _status = std::max(_status, slot->second.status);
        _slots.erase(slot);
        ++_head;
    }
}

void OrderedPrinter::_print(std::string_view text) {
    if (text.empty() || _failure || !_isHeard) {
        return;
    }
    const auto quiet = _progress.hide();
    try {
        _out.write(std::exchange(_heading, {}));
        _out.write(text);
        _out.flush();
    } catch (const ReaderGone&) {
        _isHeard = false;
        if (_endsWithReader) {
            _fail();
        }
    } catch (...) {
        _fail();
    }
}

void OrderedPrinter::giveUp() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _fail();
}

/// The first exception of all stays for all jobs to see.
void OrderedPrinter::_fail() {
    _failure = _failure ? _failure : std::current_exception();
    _changed.notify_all();
}

bool OrderedPrinter::wait(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(_mutex);
    return _changed.wait_for(lock, time, [this] { return _failure || _head == _count; });
}

std::size_t OrderedPrinter::done() {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _head;
}

void OrderedPrinter::printHeading() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _print(std::exchange(_heading, {}));
}

int OrderedPrinter::status() {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _status;
}

void OrderedPrinter::rethrow() {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_failure) {
        std::rethrow_exception(_failure);
    }
}
