# The finished program folder, out/tessaly, and the tools beside it, out/tools.
