// Another program at the parallel port: claims it, exclusively where "exclusive" stands behind its
// node, until it is ended.
#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

int main(int count, char* arguments[]) {
    const int descriptor = count < 2 ? -1 : open(arguments[1], O_RDWR);
    if ((count > 2 && ioctl(descriptor, PPEXCL) != 0) || ioctl(descriptor, PPCLAIM) != 0) {
        std::perror("hold");
        return 1;
    }
    pause();
}
