// The job "deliver": sends what waits in the Outbox.
#pragma once

// The exit status: 0 when nothing waits any more. What is held, refused or in doubt does not wait.
int deliver_job();
