/* Calls a block of the installed library. Compiled as C and as C++. */
#include <scanblocks/scanblocks.h>
#include <stdio.h>
#include <string.h>

int main(int count, char** arguments) {
  Pin in[14];
  Pin out[2];
  if (count != 2) return 2;
  memset(in, 0, sizeof in);
  memset(out, 0, sizeof out);
  strncpy(in[SCANBLOCKS_STATE_DIR].Text, arguments[1], sizeof in[0].Text - 1);
  strcpy(in[SCANBLOCKS_INSTANCE_TAG].Text, "Loop");
  strcpy(in[SCANBLOCKS_GROUP_TAG].Text, "Consumer");
  in[5].Value = 1.0;   /* Enable */
  in[7].Value = 5.0;   /* SetPoint */
  in[10].Value = -1.0; /* Kd: the change over an age of 0 is infinite, so a limit holds */
  in[13].Value = 80.0; /* OutMax */
  PID(in, out);
  printf("%g %g\n", out[0].Value, out[1].Value);
  return out[0].Value == 80.0 && out[1].Value == 0.0 ? 0 : 1;
}
