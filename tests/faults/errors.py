# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What system calls are made to fail with."""

import errno

PART = 0  # in place of an errno: half of the bytes asked for

READING = (errno.EIO, errno.EACCES, errno.EMFILE, errno.EINTR)
CREATING = (errno.EIO, errno.ENOSPC, errno.EACCES, errno.EROFS, errno.EMFILE, errno.EINTR)
CHANGING = (errno.EIO, errno.ENOSPC, errno.EACCES, errno.EROFS)
LOOKING = (errno.EIO, errno.EACCES)

# What each call can fail with, as far as its manual page and the kernel go.
ERRORS = {
    "access": (errno.EIO, errno.EACCES, errno.EROFS),
    "chmod": (errno.EIO, errno.EROFS, errno.EPERM),
    "close": (errno.EIO, errno.EINTR, errno.ENOSPC),
    "closedir": (errno.EIO, errno.EINTR),
    "copy_file_range": (errno.EIO, errno.ENOSPC, errno.EINTR, errno.EXDEV, errno.ENOSYS, PART),
    "dup2": (errno.EMFILE, errno.EBUSY, errno.EINTR),
    "execve": (errno.EIO, errno.EACCES, errno.ENOMEM, errno.E2BIG, errno.ENOENT),
    "fchmod": (errno.EIO, errno.EROFS, errno.EPERM),
    "fchmodat": (errno.EIO, errno.EROFS, errno.EPERM),
    "fcntl": (errno.EIO, errno.EINTR),
    "fdatasync": (errno.EIO, errno.ENOSPC, errno.EROFS, errno.EINTR),
    "fdopendir": (errno.EIO, errno.ENOMEM),
    "flock": (errno.EIO, errno.EINTR, errno.ENOLCK),
    "fork": (errno.EAGAIN, errno.ENOMEM),
    "fstat": LOOKING,
    "fstatat": LOOKING,
    "fsync": (errno.EIO, errno.ENOSPC, errno.EROFS, errno.EINTR),
    "ftruncate": CHANGING + (errno.EINTR,),
    "futimens": (errno.EIO, errno.EROFS, errno.EACCES, errno.EPERM),
    "getrlimit": (errno.EPERM,),
    "ioctl": (errno.EIO, errno.EINTR),
    "ioctl(FICLONE)": (errno.EIO, errno.ENOSPC, errno.EINTR, errno.EXDEV, errno.EOPNOTSUPP),
    "kill": (errno.EPERM,),
    "linkat": CHANGING,
    "lseek": (errno.EIO,),
    "lstat": LOOKING,
    "mkdir": CHANGING,
    "mkdtemp": CHANGING,
    "mkostemp": CREATING,
    "mmap": (errno.EACCES, errno.ENOMEM),
    "opendir": READING,
    "pipe2": (errno.EMFILE, errno.ENFILE),
    "poll": (errno.EINTR, errno.ENOMEM),
    "pread": (errno.EIO, errno.EINTR, PART),
    "prctl": (errno.EPERM,),
    "pthread_create": (errno.EAGAIN, errno.EPERM),
    "pwrite": (errno.EIO, errno.ENOSPC, errno.EINTR, PART),
    "read": (errno.EIO, errno.EINTR, PART),
    "readdir": (errno.EIO,),
    "readlink": LOOKING,
    "realpath": LOOKING,
    "remove": CHANGING,
    "rename": CHANGING,
    "renameat2": CHANGING + (errno.EINVAL,),
    "rmdir": CHANGING,
    "setrlimit": (errno.EPERM,),
    "sigaction": (errno.EINVAL,),
    "sigprocmask": (errno.EINVAL,),
    "stat": LOOKING,
    "statx": LOOKING,
    "symlink": CHANGING,
    "sync_file_range": (errno.EIO, errno.ENOSPC, errno.EINVAL),
    "unlink": CHANGING,
    "unlinkat": CHANGING,
    "utimensat": (errno.EIO, errno.EROFS, errno.EACCES, errno.EPERM),
    "waitpid": (errno.EINTR, errno.ECHILD),
    "write": (errno.EIO, errno.ENOSPC, errno.EINTR, PART),
}


def error_name(error):
    return errno.errorcode[error] if error else "part"


def errors_for(function, changes):
    if function in ("open", "openat"):
        return CREATING if changes else READING
    return ERRORS[function]
