"""Prints CRC-32 and both AccurateRip sums of raw sound, as they were published: the sum of each 32-bit sample times its
place from 1 on, low words alone (v1) or low and high words (v2), without the disc's first 2939 and last 2940 samples."""

import sys
import zlib

path, first, last = sys.argv[1], sys.argv[2] == "first", sys.argv[3] == "last"
sound = open(path, "rb").read()
samples = [int.from_bytes(sound[at:at + 4], "little") for at in range(0, len(sound), 4)]
begin = 588 * 5 - 1 if first else 0
end = len(samples) - 588 * 5 if last else len(samples)
products = [(at + 1) * samples[at] for at in range(begin, end)]
v1 = sum(product % 2**32 for product in products) % 2**32
v2 = (v1 + sum(product // 2**32 for product in products)) % 2**32
print("%08X %08X %08X" % (zlib.crc32(sound), v1, v2))
