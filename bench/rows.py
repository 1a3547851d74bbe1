"""What is compared. A new row is one line in ROWS, and contestants that run under its series."""

from dataclasses import dataclass

from bench.programs import PORTABLE, BenchmarkProgram, MacBenchmarkProgram, SafariList, WholeRun


@dataclass(frozen=True)
class Row:
    name: str
    source: object  # what measures it: see the module `programs`
    series: str  # the name under which the source knows it
    unit: str
    target: float  # our figure : the peer's
    peer: str = ""  # the peer that the target speaks of; else the best one


AS_IT_IS = BenchmarkProgram("bench_crypto")
WITHOUT_EXTRAS = BenchmarkProgram("bench_crypto_portable", PORTABLE)
ON_A_MAC = MacBenchmarkProgram("bench_product")
WHOLE_RUN = WholeRun()
EXTENSIONS = SafariList(lambda n: {"Archive File Name": f"{n}.safariextz", "Enabled": n % 2 == 0, "Number": n})
NUMBERS = SafariList(lambda n: n % 100)

ROWS = [
    Row("AES-256 ECB, encipher 16 kB, portable", WITHOUT_EXTRAS, "aes-encrypt", "MB/s", 1.25),
    Row("AES-256 ECB, decipher 16 kB, portable", WITHOUT_EXTRAS, "aes-decrypt", "MB/s", 1.25),
    Row("AES-256 key set-up and one block, portable", WITHOUT_EXTRAS, "aes-key-setup", "1000/s", 1.0),
    Row("SHA-256 of 16 kB, portable", WITHOUT_EXTRAS, "sha256", "MB/s", 1.0),
    Row("SHA-256 of 16 kB, as the processor allows", AS_IT_IS, "sha256", "MB/s", 0.95),
    Row("SHA-256 of 64 bytes", AS_IT_IS, "sha256-short", "1000/s", 1.1, peer="OpenSSL"),
    Row("Base64, encode 48 kB", AS_IT_IS, "base64-encode", "MB/s", 1.0, peer="OpenSSL"),
    Row("Base64, decode 48 kB", AS_IT_IS, "base64-decode", "MB/s", 1.0, peer="OpenSSL"),
    Row("a plain log message", ON_A_MAC, "log-plain", "1000/s", 1.1),
    Row("an enciphered log message", ON_A_MAC, "log-enciphered", "1000/s", 0.9),
    Row("a log message through NSLogger", ON_A_MAC, "log-cocoa", "1000/s", 0.4),
    Row("one of 100 settings, set", ON_A_MAC, "setting", "1000/s", 0.5),
    Row("the whole run, prompts refused", WHOLE_RUN, "run", "1/s", 0.625),
    Row("a Safari list of 5 MB, read and written", EXTENSIONS, "time", "MB/s", 1.0),
    Row("the same, memory (file : growth)", EXTENSIONS, "memory", "1/GB", 0.167),
    Row("small integers, 5 MB, memory (file : growth)", NUMBERS, "memory", "1/GB", 0.167),
]
