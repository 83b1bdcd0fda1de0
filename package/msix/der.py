"""Reads DER, the encoding of certificates and signatures."""

OCTETS, OBJECT_ID, SEQUENCE, EXPLICIT_0 = 0x04, 0x06, 0x30, 0xA0

# Lengths are written in at most four bytes: nothing here is larger than a file.
_MOST_LENGTH_BYTES = 4


def items(data):
    """The (tag, content) pairs that follow each other in the content of a value. Raises ValueError."""
    at = 0
    while at < len(data):
        if at + 2 > len(data):
            raise ValueError("it is cut off")
        tag, length, start = data[at], data[at + 1], at + 2
        if length & 0x80:
            count = length & 0x7F
            if not 0 < count <= _MOST_LENGTH_BYTES or start + count > len(data):
                raise ValueError("it has a length that cannot be read")
            length, start = int.from_bytes(data[start : start + count], "big"), start + count
        if start + length > len(data):
            raise ValueError("it is cut off")
        yield tag, data[start : start + length]
        at = start + length


def child(data, tag, number=0):
    """The content of the number-th child of that tag. Raises ValueError."""
    for kind, content in items(data):
        if kind == tag:
            if number == 0:
                return content
            number -= 1
    raise ValueError("a part of its structure is missing")


def object_id(data):
    """The dotted form of an object id's content. Raises ValueError."""
    most_bytes = 64
    if not 0 < len(data) <= most_bytes or data[-1] & 0x80:
        raise ValueError("it has an object id that cannot be read")
    numbers, value = [], 0
    for byte in data:
        value = value << 7 | byte & 0x7F
        if not byte & 0x80:
            numbers.append(value)
            value = 0
    first = min(numbers[0] // 40, 2)
    return ".".join(map(str, [first, numbers[0] - 40 * first, *numbers[1:]]))
