# Writes the header with the date and time of the build, in UTC. SOURCE_DATE_EPOCH, where the
# environment sets it, is that time, so a build can be repeated byte for byte.
string(TIMESTAMP date "%b %d %Y" UTC)
string(TIMESTAMP time "%H:%M:%S" UTC)
file(WRITE ${OUTPUT} "#define PX_BUILD_DATE \"${date}\"
#define PX_BUILD_TIME \"${time}\"
")
