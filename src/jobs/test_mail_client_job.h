// The job "test-mail-client": what the Test button of the mail client's page does, a line a step.
#pragma once

// 0 when mail comes in, and goes out or is kept on purpose; else 1.
int test_mail_client_job();
