# Time stamps are those of the call.
libquorvel_bin backup Info 1
libquorvel_bin backup GetDestination 1 1
libquorvel_bin backup Destinfo 2 | sed 's/task-generations\/20[0-9]\{12\}/task-generations\/NOW/'
