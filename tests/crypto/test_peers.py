"""The crypto room asked the same as Python and openssl."""

import base64
import hashlib
import itertools
import random
import subprocess

from tests.support import build

LENGTHS = range(301)
FROM_BYTES_ERROR = "wstring_convert: from_bytes error"
TO_BYTES_ERROR = "wstring_convert: to_bytes error"


def random_bytes(length, seed=0):
    return random.Random(f"{length} {seed}").randbytes(length)


def ours(operation, lines):
    """The answers of crypto_lines: bytes, or the text of a range error."""
    questions = "\n".join(" ".join(field.hex() or "-" for field in line) for line in lines)
    answers = subprocess.run(
        [build.program("crypto_lines"), operation],
        input=questions, stdout=subprocess.PIPE, check=True, text=True,
    ).stdout.splitlines()
    assert len(answers) == len(lines)
    return [
        answer[2:] if answer.startswith("! ") else bytes.fromhex(answer.replace("-", ""))
        for answer in answers
    ]


def openssl(cipher, key, data, *options):
    """The data, enciphered by a program; what deciphers that to the data again agrees with it both ways."""
    command = ["openssl", "enc", f"-{cipher}", "-nopad", "-K", key.hex(), *options]
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, check=True).stdout


def prepared(key):
    return key[:32].ljust(32, b"\0")


def test_base64_encodes_every_length_as_python_does():
    texts = [random_bytes(n) for n in LENGTHS] + [bytes(n) for n in LENGTHS]
    texts.append(bytes(range(256)))
    assert ours("base64-encode", [[text] for text in texts]) == [base64.b64encode(t) for t in texts]


def test_base64_decodes_every_length_that_python_encodes():
    texts = [random_bytes(n) for n in LENGTHS] + [bytes(n) for n in LENGTHS]
    texts.append(bytes(range(256)))
    encoded = [base64.b64encode(text) for text in texts]
    assert ours("base64-decode", [[text] for text in encoded]) == texts
    unpadded = [text.rstrip(b"=") for text in encoded]
    assert ours("base64-decode", [[text] for text in unpadded]) == texts


def test_sha256_of_every_length_is_pythons():
    texts = [random_bytes(n) for n in range(131)] + [random_bytes(n) for n in (1000, 65536, 99999)]
    expected = [hashlib.sha256(text).hexdigest().encode() for text in texts]
    assert ours("sha256", [[text] for text in texts]) == expected


def test_engines_agree_with_openssl_for_every_length_of_key():
    text = random_bytes(160)
    keys = [random_bytes(n) for n in range(49)]
    enciphered = [openssl("aes-256-ecb", prepared(key), text) for key in keys]
    assert ours("encrypt", [[key, text] for key in keys]) == enciphered
    assert ours("decrypt", [list(line) for line in zip(keys, enciphered)]) == [text] * len(keys)


def test_password_cipher_agrees_with_openssl_for_every_length_of_password():
    text = random_bytes(160)
    passwords = [random_bytes(n) for n in range(49)]
    enciphered = [openssl("aes-256-ecb", prepared(password), text) for password in passwords]
    assert ours("password-encrypt", [[password, text] for password in passwords]) == enciphered
    assert ours("password-decrypt", [list(line) for line in zip(passwords, enciphered)]) == (
        [text] * len(passwords))


def test_a_tail_is_cut_after_enciphering_a_block_with_zeros_behind_it():
    key = random_bytes(32)
    texts = [random_bytes(n) for n in range(50)]
    padded = [text.ljust((len(text) + 15) // 16 * 16, b"\0") for text in texts]
    enciphered = openssl("aes-256-ecb", key, b"".join(padded))  # block by block
    places = itertools.accumulate(map(len, padded), initial=0)
    expected = [enciphered[at : at + len(text)] for at, text in zip(places, texts)]
    assert ours("encrypt", [[key, text] for text in texts]) == expected


def test_monte_carlo_chain_agrees_with_openssl():
    # Enciphering a block over and over is what CBC makes of zeros with that block as its start value.
    key, block = random_bytes(32), random_bytes(16)
    zeros = bytes(16 * 1000)
    steps = []
    for _ in range(100):
        chain = openssl("aes-256-cbc", key, zeros, "-iv", block.hex())
        steps.append((key, block, chain[-16:]))
        # The next key takes up the last two blocks, the next start is the last.
        key = bytes(a ^ b for a, b in zip(key, chain[-32:]))
        block = chain[-16:]
    assert ours("encrypt-chain", [[key, first] for key, first, _ in steps]) == [s[2] for s in steps]
    assert ours("decrypt-chain", [[key, last] for key, _, last in steps]) == [s[1] for s in steps]


def broken_and_sound_texts():
    """Texts of every plane, cut, mixed up and damaged."""
    pick = random.Random("texts")
    alphabet = [0, 0x41, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFEFF, 0xFFFF, 0x10000, 0x10FFFF]
    for _ in range(3000):
        yield "".join(chr(pick.choice(alphabet)) for _ in range(pick.randrange(6))), pick


def damaged(data, pick, unit):
    """`data` in which up to two units were changed, removed or put in, as bytes."""
    units = [data[at : at + unit] for at in range(0, len(data), unit)]
    for _ in range(pick.randrange(3)):
        at = pick.randrange(len(units) + 1)
        units[at : at + pick.randrange(2)] = [pick.randbytes(unit)] * pick.randrange(2)
    return b"".join(units)


def as_python(data, source, target, error):
    try:
        return data.decode(source).encode(target)
    except UnicodeDecodeError:
        return error


def check_conversion(operation, source, target, unit, error):
    texts = [damaged(t.encode(source), pick, unit) for t, pick in broken_and_sound_texts()]
    expected = [as_python(text, source, target, error) for text in texts]
    assert error in expected
    assert ours(operation, [[text] for text in texts]) == expected


def test_utf8_to_utf16_judges_and_converts_as_python_does():
    check_conversion("utf8-to-utf16", "utf-8", "utf-16-le", 1, FROM_BYTES_ERROR)


def test_utf16_to_utf8_judges_and_converts_as_python_does():
    check_conversion("utf16-to-utf8", "utf-16-le", "utf-8", 2, TO_BYTES_ERROR)


def test_utf16_to_wide_judges_and_converts_as_python_does():
    check_conversion("utf16-to-utf32", "utf-16-le", "utf-32-le", 2, FROM_BYTES_ERROR)
