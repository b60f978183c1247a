# SPDX-License-Identifier: MIT
"""Pictures that look the same and are different files."""

import struct
import zlib

IEND_LENGTH = 12


def with_comment(png, comment):
    """The same picture with a comment, so that no two files are equal."""
    body = b"tEXtComment\0" + comment.encode()
    chunk = struct.pack(">I", len(body) - 4) + body + struct.pack(">I", zlib.crc32(body))
    return png[:-IEND_LENGTH] + chunk + png[-IEND_LENGTH:]
