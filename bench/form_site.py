"""What the benches share: form mails, program folders with a map for them, timed runs."""

import os
import pathlib
import random
import shutil
import subprocess
import sys
import time

source = pathlib.Path(__file__).resolve().parent.parent
out = pathlib.Path(os.environ.get("TESSALY_OUT", source / "out"))
build = source / "build/ci"
FIELDS = [f"field_{n}" for n in range(1, 13)]
SUBJECT = "Order from the web shop"


def vocabulary(size=20000):
    """Words such as visitors type: names, streets, towns, wishes. Always the same ones."""
    chance = random.Random(1)
    parts = ["ba", "co", "del", "er", "fin", "gar", "hol", "in", "ka", "lo", "mar", "ne", "or", "pel", "ri", "san", "ton", "vi"]
    return ["".join(chance.choices(parts, k=chance.randint(2, 4))) for _ in range(size)]


WORDS = vocabulary()


def form_mail(number, account):
    """About 1 KiB: twelve fields of what visitors type."""
    chance = random.Random(number)
    lines = "".join(f"{name}: {' '.join(chance.choices(WORDS, k=7))} {chance.randint(1, 99999)}\n" for name in FIELDS)
    return (f"Return-Path: <visitor{number}@mail.example>\nFrom: Visitor {number} <visitor{number}@mail.example>\n"
            f"To: {account}\nSubject: {SUBJECT}\nDate: Thu, 13 Aug 2026 13:02:03 +0200\n"
            f"Message-ID: <{number}@mail.example>\nMIME-Version: 1.0\n"
            f"Content-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n{lines}").encode()


def make_maildir(folder, first, count, account):
    for part in ("cur", "new", "tmp"):
        (folder / part).mkdir(parents=True, exist_ok=True)
    for number in range(first, first + count):
        come = 1786000000 + number  # by its name, and by its file for a server
        file = folder / "new" / f"{come}.{number}.bench"
        file.write_bytes(form_mail(number, account))
        os.utime(file, (come, come))


def make_site(folder, accounts, mail_client=None):
    """A program folder with its settings, and one map with twelve fields an account. mail_client: the lines of the
    settings group; None: the Maildir of the folder."""
    program = folder / "tessaly"
    program.mkdir(parents=True)
    shutil.copy(out / "tools/mailapp.mdb", program)
    statements = ["update install_tbl set install=yes"]
    for at, account in enumerate(accounts, 1):
        table = f"map{at}"
        statements += [
            f"insert into email_tbl(query,email,table_name) values('account{at}','{account}','account{at}')",
            f"select * into [account{at}] from model_for_first",
            "insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) "
            f"values('{table}',date(),{at},no,'Line','{SUBJECT}')",
            f"select * into {table} from model_tbl"]
        for line, name in enumerate(FIELDS, 1):
            statements += [f"alter table {table} add column {name} text(255)",
                           "insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) "
                           f"values('{name}','Line{line}',':',no,{at},0)"]
    (folder / "site.sql").write_text("\n".join(statements) + "\n")
    subprocess.run([out / "tools/make_sample", program / "mailapp.mdb", folder / "site.sql"], check=True)
    config = folder / "config"
    config.mkdir()
    settings = config / "brenmoorbiz.conf"
    settings.write_text(f"[mail_client]\n{mail_client or f'kind=maildir{chr(10)}maildir={folder}/Maildir'}\n")
    settings.chmod(0o600)
    return program


def timed(command, **environment):
    """Seconds, and the peak memory in MiB."""
    begin = time.perf_counter()
    child = subprocess.Popen(command, env={**os.environ, **environment}, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    if status != 0:
        sys.exit(f"{command[0]} ended with {status}")
    return time.perf_counter() - begin, usage.ru_maxrss / 1024


def job(name, folder, *options):
    """One job of the driver on a site: seconds, and its peak memory in MiB."""
    return timed([str(out / "tools/tessaly_jobs"), name, "--folder", str(folder / "tessaly"), *options],
                 XDG_CONFIG_HOME=str(folder / "config"), HOME=str(folder))
