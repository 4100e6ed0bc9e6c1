#include "surroundings.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <unistd.h>

#include <string_view>

namespace {

constexpr int kStandardDescriptors = 3;
constexpr int kExitWithoutDescriptors = 1;

// A file opened later must not take the number of a missing descriptor: messages would be written into it. Without a
// /dev/null a directory holds the place, which can be neither read nor written. Descriptors are filled in rising order,
// so each open gets the number that is missing.
void fill_descriptor(int number) {
    int opened = open("/dev/null", (number == STDIN_FILENO ? O_RDONLY : O_WRONLY) | O_NOCTTY);
    if (opened < 0) opened = open("/", O_RDONLY | O_DIRECTORY);
    if (opened != number) _exit(kExitWithoutDescriptors);
}

void fill_descriptors() {
    struct pollfd standard[kStandardDescriptors] = {
        {STDIN_FILENO,  0, 0},
        {STDOUT_FILENO, 0, 0},
        {STDERR_FILENO, 0, 0}
    };
    if (poll(standard, kStandardDescriptors, 0) == 0) return;
    for (const struct pollfd& descriptor : standard) {
        if ((descriptor.revents & POLLNVAL) != 0) fill_descriptor(descriptor.fd);
    }
}

// "Europe/Berlin", "CET-1CEST", "<+05>-5": a path could name any file, and a device that is opened may act.
bool is_plain_zone(std::string_view zone) {
    return !zone.starts_with(':') && !zone.starts_with('/') && zone.find("..") == std::string_view::npos;
}

// What every command gets by with, and what it is given when the caller may have that much.
struct Limit {
    int resource;
    rlim_t least;
    rlim_t wanted;
    const char* name;
};

constexpr Limit kLimits[] = {
    {RLIMIT_NOFILE, 16,       256,      "open files"      },
    {RLIMIT_STACK,  1U << 18, 1U << 20, "the stack's size"},
};

// Beyond the hard limit only root may go.
[[nodiscard]] bool raise_limit(const Limit& limit) {
    struct rlimit present = {};
    if (getrlimit(limit.resource, &present) != 0 || present.rlim_cur >= limit.wanted) return true;
    struct rlimit raised = {limit.wanted, present.rlim_max < limit.wanted ? limit.wanted : present.rlim_max};
    if (setrlimit(limit.resource, &raised) == 0) return true;
    raised = {present.rlim_max, present.rlim_max};
    return present.rlim_max >= limit.least && setrlimit(limit.resource, &raised) == 0;
}

char kPath[] = "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
char kLocale[] = "LC_ALL=C";
char* kCleanEnvironment[] = {kPath, kLocale, nullptr};

void clean_environment() {
    if (getauxval(AT_SECURE) != 0) {
        environ = kCleanEnvironment;
        return;
    }
    // The folder of the zones is the system's own.
    (void)unsetenv("TZDIR");
    const char* zone = getenv("TZ");
    if (zone != nullptr && !is_plain_zone(zone)) (void)unsetenv("TZ");
}

}  // namespace

void put_surroundings_right() {
    fill_descriptors();
    clean_environment();
}

const char* low_limit() {
    for (const Limit& limit : kLimits) {
        if (!raise_limit(limit)) return limit.name;
    }
    return nullptr;
}

void put_signals_right() {
    struct sigaction usual = {};
    usual.sa_handler = SIG_DFL;
    for (int number : {SIGPIPE, SIGCHLD})
        (void)sigaction(number, &usual, nullptr);
    // A file that may not grow further is an error to be told, and what was begun is cleared away.
    usual.sa_handler = SIG_IGN;
    (void)sigaction(SIGXFSZ, &usual, nullptr);
    alarm(0);
    sigset_t none;
    sigemptyset(&none);
    (void)sigprocmask(SIG_SETMASK, &none, nullptr);
}

char* executed_name() {
    static char unknown[] = "";
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands pointers over as numbers
    char* path = reinterpret_cast<char*>(getauxval(AT_EXECFN));
    if (path == nullptr) return unknown;
    char* slash = strrchr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}
