// The job "fetch": what loading the Mail Auditor does, without a window.
#pragma once

// The exit status.
int fetch_job();
