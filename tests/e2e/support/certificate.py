"""A temporary certificate for the secure hosts of the tests' web site."""

import hashlib
import os
import ssl
import subprocess


def make_certificate(folder, hosts):
    """Makes a certificate for the given hosts; returns the paths of its file and its key's file."""
    certificate, key = os.path.join(folder, "site.crt"), os.path.join(folder, "site.key")
    names = ",".join(f"DNS:{host}" for host in hosts) or "DNS:none.example"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-batch",
         "-subj", "/CN=loopback site of the tests", "-addext", f"subjectAltName={names}",
         "-keyout", key, "-out", certificate],
        check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return certificate, key


def fingerprint_of(certificate):
    with open(certificate, encoding="ascii") as file:
        digest = hashlib.sha256(ssl.PEM_cert_to_DER_cert(file.read())).hexdigest().upper()
    return ":".join(digest[start:start + 2] for start in range(0, len(digest), 2))
