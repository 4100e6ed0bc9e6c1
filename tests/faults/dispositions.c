/* A program that never asks what its caller made of SIGCHLD and SIGPIPE: what the library's commands came to, and
 * whether the signals are as they were. */
#include <libquorvel_bin.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>

static void look(struct sigaction* actions, sigset_t* blocked) {
    sigaction(SIGCHLD, NULL, &actions[0]);
    sigaction(SIGPIPE, NULL, &actions[1]);
    sigprocmask(SIG_BLOCK, NULL, blocked);
}

int main(void) {
    char* output = NULL;
    char* reachable[] = {"dns", "-r", "1", NULL};
    struct sigaction before[2], after[2];
    sigset_t blocked_before, blocked_after;
    memset(&blocked_before, 0, sizeof blocked_before);
    memset(&blocked_after, 0, sizeof blocked_after);
    look(before, &blocked_before);
    printf("%#x\n", (unsigned)ExecPipe("echo text; yes | head -n 1; exit 3", &output));
    printf("%s", output);
    free(output);
    printf("partition %d\n", create_usb_partition("sda", "xfs", "gpt"));
    printf("encrypted %d\n", LibQuorvelBin_SetEncryptionMacAddressNicFile("eth0", "/etc/resolv.conf"));
    printf("reachable %d\n", LibQuorvelBin_IsDNSReachable(3, reachable));
    printf("power %d\n", LibQuorvelBin_IsPowerSupplyedDisk(0));
    setenv("PATH", "/nowhere", 1);
    printf("reachable %d\n", LibQuorvelBin_IsDNSReachable(3, reachable));
    printf("wiped %d\n", LibQuorvelBin_NandErase());
    look(after, &blocked_after);
    printf("handlers %s, mask %s\n",
           before[0].sa_handler == after[0].sa_handler && before[1].sa_handler == after[1].sa_handler ? "kept" : "lost",
           memcmp(&blocked_before, &blocked_after, sizeof blocked_before) == 0 ? "kept" : "lost");
    printf("children %d\n", waitpid(-1, NULL, WNOHANG) > 0);
    return 0;
}
