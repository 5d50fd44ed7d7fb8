"""Mounts a file system that answers nothing, as a network disk does whose server is gone.

Says where, or why not; unmounts and ends when its input does. Has to be run by the superuser.
"""
import ctypes
import os
import struct
import sys
import tempfile

INIT = 26
MNT_DETACH = 2
IN_HEADER = struct.Struct("<IIQQIIII")
OUT_HEADER = struct.Struct("<IiQ")
# Version, read-ahead, flags, background requests, greatest write; the rest is zero.
INIT_ANSWER = struct.pack("<IIIIHHI", 7, 31, 0, 0, 16, 12, 4096) + bytes(40)

libc = ctypes.CDLL(None, use_errno=True)


def mount(folder):
    """The connection of the new file system, or raises."""
    connection = os.open("/dev/fuse", os.O_RDWR)
    options = f"fd={connection},rootmode=40000,user_id=0,group_id=0,allow_other"
    if libc.mount(b"fennik", folder.encode(), b"fuse.fennik", 0, options.encode()) != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))
    # What comes after this is not even read, so that whoever waits for an answer can be killed.
    _, operation, number, *_ = IN_HEADER.unpack_from(os.read(connection, 1 << 17))
    assert operation == INIT
    os.write(connection,
             OUT_HEADER.pack(OUT_HEADER.size + len(INIT_ANSWER), 0, number) + INIT_ANSWER)
    return connection


def main():
    folder = tempfile.mkdtemp(prefix="fennik-dead-")
    try:
        connection = mount(folder)
        print(folder, flush=True)
        sys.stdin.read()
        libc.umount2(folder.encode(), MNT_DETACH)
        # Whoever still waits gets an error as soon as the connection is gone.
        os.close(connection)
    except OSError as error:
        print(error.strerror, flush=True)
    os.rmdir(folder)


if __name__ == "__main__":
    main()
