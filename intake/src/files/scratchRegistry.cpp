#include "scratchRegistry.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <sys/syscall.h>
#include <unistd.h>

namespace OrvComtradeIntake {

namespace {

enum SlotState : int { Free, Claimed, Live, Taken };

} // namespace

/// Slots are never freed and are reused, so that the handler may walk their list at any moment.
struct ScratchSlot {
    std::atomic<int> state{Claimed};
    pid_t process = 0;
    std::array<char, PATH_MAX> path{};
    ScratchSlot* next = nullptr;
};

namespace {

std::atomic<ScratchSlot*> firstSlot{nullptr};
std::once_flag handlersInstalled;
std::mutex slotsMutex; // of those who take and release slots; the handler goes by their states alone
std::atomic<int> foldersInMaking{0};
std::atomic<bool> ending{false}; // the handler is at work, in whichever thread

static_assert(std::atomic<int>::is_always_lock_free && std::atomic<ScratchSlot*>::is_always_lock_free &&
                  std::atomic<bool>::is_always_lock_free,
              "the signal handler reads them");

bool move(ScratchSlot& slot, SlotState from, SlotState to) {
    int expected = from;
    return slot.state.compare_exchange_strong(expected, to);
}

constexpr std::size_t kListLength = 2048; // bytes of names read at a time, on the stack of the handler
constexpr int kDeepest = 8;               // folders within folders; the intake itself makes none
constexpr int kAttempts = 16;             // at a folder into which another thread still puts files
constexpr int kPatience = 1000;           // milliseconds that the handler waits for folders in the making

/// As the kernel hands them out; the C library's own reading of folders allocates, which a handler must not.
struct KernelEntry {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    unsigned char type;
};
constexpr std::size_t kNameOffset = offsetof(KernelEntry, type) + 1;

bool isSelfOrParent(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

void removeFolder(int parent, const char* path, int depth);

void removeListed(int folder, const char* list, std::size_t length, int depth) {
    std::size_t position = 0;
    while (position < length) {
        std::uint16_t entryLength = 0;
        std::memcpy(&entryLength, list + position + offsetof(KernelEntry, length), sizeof entryLength);
        const char* const name = list + position + kNameOffset;
        if (!isSelfOrParent(name) && unlinkat(folder, name, 0) != 0 && depth < kDeepest) {
            removeFolder(folder, name, depth + 1);
        }
        position += entryLength;
    }
}

void emptyFolder(int parent, const char* path, int depth) { // NOLINT(misc-no-recursion): as deep as kDeepest
    const int folder = openat(parent, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder >= 0) {
        alignas(KernelEntry) std::array<char, kListLength> list{};
        long length = 0;
        while ((length = syscall(SYS_getdents64, folder, list.data(), list.size())) > 0) {
            removeListed(folder, list.data(), static_cast<std::size_t>(length), depth);
        }
        close(folder);
    }
}

/// Removes the folder with everything in it by calls that are safe in a signal handler.
void removeFolder(int parent, const char* path, int depth) { // NOLINT(misc-no-recursion): as deep as kDeepest
    const int attempts = depth == 0 ? kAttempts : 1;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        emptyFolder(parent, path, depth);
        if (unlinkat(parent, path, AT_REMOVEDIR) == 0 || (errno != ENOTEMPTY && errno != EEXIST)) {
            return;
        }
    }
}

void sleepMilliseconds(int count) {
    const timespec time = {count / 1000, count % 1000 * 1000000L};
    nanosleep(&time, nullptr);
}

/// Other threads may be between the making of a folder and its registration; this one has the signals blocked then.
void awaitFoldersInMaking() {
    for (int passed = 0; foldersInMaking.load() != 0 && passed < kPatience; ++passed) {
        sleepMilliseconds(1);
    }
}

extern "C" void removeScratchFolders(int signal) {
    const int before = errno;
    ending.store(true);
    awaitFoldersInMaking();
    for (ScratchSlot* slot = firstSlot.load(); slot != nullptr; slot = slot->next) {
        if (move(*slot, Live, Taken) && slot->process == getpid()) {
            removeFolder(AT_FDCWD, slot->path.data(), 0);
        }
    }
    struct sigaction usual = {};
    usual.sa_handler = SIG_DFL;
    sigaction(signal, &usual, nullptr);
    raise(signal); // delivered when the handler returns
    errno = before;
}

void installHandler(int signal) {
    struct sigaction present = {};
    if (sigaction(signal, nullptr, &present) != 0 || (present.sa_flags & SA_SIGINFO) != 0 ||
        present.sa_handler != SIG_DFL) {
        return; // the program's own business
    }
    struct sigaction removing = {};
    removing.sa_handler = removeScratchFolders;
    sigemptyset(&removing.sa_mask);
    for (const int other : kEndingSignals) {
        sigaddset(&removing.sa_mask, other);
    }
    sigaction(signal, &removing, nullptr);
}

ScratchSlot* claimSlot() {
    const std::lock_guard<std::mutex> lock(slotsMutex);
    for (ScratchSlot* slot = firstSlot.load(); slot != nullptr; slot = slot->next) {
        if (move(*slot, Free, Claimed)) {
            return slot;
        }
    }
    auto* const slot = new ScratchSlot; // stays for the life of the program: the list leads to it
    slot->next = firstSlot.load();
    firstSlot.store(slot);
    return slot;
}

} // namespace

ScratchPlace::ScratchPlace() : _slot(claimSlot()) {
    std::call_once(handlersInstalled,
                   [] { std::for_each(kEndingSignals.begin(), kEndingSignals.end(), installHandler); });
    ++foldersInMaking;
    if (ending.load()) { // a folder made now would stay behind
        --foldersInMaking;
        sleepMilliseconds(kPatience);
        ++foldersInMaking;
    }
}

ScratchPlace::~ScratchPlace() {
    move(*_slot, Claimed, Free); // not taken
    --foldersInMaking;
}

void ScratchPlace::take(const std::string& path) const noexcept {
    if (path.size() >= _slot->path.size()) {
        return;
    }
    std::memcpy(_slot->path.data(), path.c_str(), path.size() + 1);
    _slot->process = getpid();
    _slot->state.store(Live);
}

namespace {

ScratchSlot* slotOf(const char* path) {
    for (ScratchSlot* slot = firstSlot.load(); slot != nullptr; slot = slot->next) {
        if (slot->state.load() == Live && std::strcmp(slot->path.data(), path) == 0) {
            return slot;
        }
    }
    return nullptr;
}

} // namespace

bool isOwnScratchFolder(const char* path) noexcept {
    const std::lock_guard<std::mutex> lock(slotsMutex);
    const ScratchSlot* const slot = slotOf(path);
    return slot != nullptr && slot->process == getpid();
}

void releaseScratchFolder(const char* path) noexcept {
    const std::lock_guard<std::mutex> lock(slotsMutex);
    if (ScratchSlot* const slot = slotOf(path)) {
        move(*slot, Live, Free);
    }
}

} // namespace OrvComtradeIntake
