/* A set-uid program that lets accounts without rights ask for a few answers, and nothing else:
 *
 *     disk_answers disks
 *     disk_answers diskname sda
 *     disk_answers dns_reachable
 *
 * Install it owned by root, in the group that may ask: chown root:operators, chmod 4750. The caller chooses a word of the
 * list below and arguments of plain characters; path, name, environment and descriptors of the command are chosen here. */
#define _GNU_SOURCE
#include <grp.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#ifndef COMMAND
#define COMMAND "/usr/bin/libquorvel_bin"
#endif

/* Words that write, erase or run a text as a command line have no place here. */
static const struct {
    const char* word;
    int most; /* arguments */
} allowed[] = {
    {"disks", 0},
    {"diskname", 1},
    {"dns_reachable", 0},
};

static int is_allowed(int argc, char** argv) {
    for (size_t i = 0; argc > 1 && i < sizeof allowed / sizeof allowed[0]; i++) {
        if (strcmp(argv[1], allowed[i].word) == 0) return argc - 2 <= allowed[i].most;
    }
    return 0;
}

/* An option or a path is none. */
static int is_plain(const char* argument) {
    static const char characters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    return argument[0] != '\0' && argument[strspn(argument, characters)] == '\0';
}

/* The caller may end the command from the terminal: no file of it, which would be root's, is left in "/". */
static int forbid_core_files(void) {
    const struct rlimit none = {0, 0};
    return setrlimit(RLIMIT_CORE, &none) == 0;
}

/* The rights become those of a real root: a shell gives up rights that its caller does not have. */
static int become_root(void) {
    return setgroups(0, NULL) == 0 && setgid(0) == 0 && setuid(0) == 0;
}

int main(int argc, char** argv) {
    char* environment[] = {"PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL=C", NULL};
    char* arguments[] = {"libquorvel_bin", argc > 1 ? argv[1] : NULL, argc > 2 ? argv[2] : NULL, NULL};
    if (!is_allowed(argc, argv) || (argc > 2 && !is_plain(argv[2]))) {
        fprintf(stderr, "disk_answers: not one of the questions that may be asked\n");
        return 2;
    }
    umask(022);
    if (chdir("/") != 0 || !forbid_core_files() || !become_root()) {
        perror("disk_answers");
        return 1;
    }
    for (int descriptor = 3; descriptor < 256; descriptor++)
        close(descriptor);
    execve(COMMAND, arguments, environment);
    perror(COMMAND);
    return 1;
}
