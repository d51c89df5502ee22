"""A Dovecot on a free port of 127.0.0.1 whose mail is a Maildir in a given folder."""
import grp
import os
import pwd
import socket
import subprocess
import time


def await_port(port, process):
    """Waits until the server `process` answers on a port of 127.0.0.1."""
    while True:
        try:
            socket.create_connection(("127.0.0.1", port)).close()
            return
        except OSError:
            if process.poll() is not None:
                raise RuntimeError("the server ended with code %d" % process.returncode)
            time.sleep(0.05)


def users():
    """Under whom the server's processes run, and who owns the mail: root gives its rights away; anybody else has none
    to give, and cannot lock the server into a folder."""
    if os.geteuid() == 0:
        return "mail", "mail", "default_login_user = dovenull\ndefault_internal_user = dovecot\n"
    user, group = pwd.getpwuid(os.geteuid()).pw_name, grp.getgrgid(os.getegid()).gr_name
    return user, group, f"""default_login_user = {user}
default_internal_user = {user}
default_internal_group = {group}
service anvil {{
  chroot =
}}
service pop3-login {{
  chroot =
}}
service stats {{
  chroot =
}}
"""


class Dovecot:
    """Serves POP3 to any user with the password "secret" from WORK/mail until stopped."""

    def __init__(self, work):
        self.mail = work / "mail"
        for part in ("cur", "new", "tmp"):
            (self.mail / part).mkdir(parents=True, exist_ok=True)
        os.chmod(work, 0o755)
        user, group, identities = users()
        subprocess.run(["chown", "-R", f"{user}:{group}", str(self.mail)], check=True)
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        config = work / "dovecot.conf"
        config.write_text(f"""
protocols = pop3
base_dir = {work}/run
log_path = {work}/log
ssl = no
disable_plaintext_auth = no
auth_mechanisms = plain login apop
{identities}
first_valid_uid = 1
mail_location = maildir:{work}/mail
passdb {{
  driver = static
  args = password={{PLAIN}}secret
}}
userdb {{
  driver = static
  args = uid={user} gid={group} home={work}
}}
service pop3-login {{
  inet_listener pop3 {{
    address = 127.0.0.1
    port = {self.port}
  }}
  inet_listener pop3s {{
    port = 0
  }}
}}
""")
        self.process = subprocess.Popen(["/usr/sbin/dovecot", "-F", "-c", str(config)])
        await_port(self.port, self.process)

    def stop(self):
        self.process.terminate()
        self.process.wait()
