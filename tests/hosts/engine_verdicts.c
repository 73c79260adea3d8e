/* What the engine's compiler says of many question scripts, in one process: for every line "STUDY SCRIPT" of standard
 * input, a line with the result and the message, its line ends as blanks. In the current directory, which has a "temp"; the
 * outputs are removed. */
#include <stdio.h>
#include <string.h>

#include "tavimo_host.h"

static char message[1024];

static void note_message(const char* text, const char* caption, void* user) {
  (void)caption;
  (void)user;
  if (tvUtf8FromGbk(text, message, (int)sizeof message) < 0) strcpy(message, "no GBK text");
}

static void ignore_beep(void* user) { (void)user; }

static void remove_outputs(const char* script) {
  char path[220];
  for (int i = 0; i < 2; ++i) {
    snprintf(path, sizeof path, "temp/%.*s%s", (int)strcspn(script, "."), script, i == 0 ? ".tst" : ".wz");
    remove(path);
  }
}

int main(void) {
  char study[200];
  char script[200];
  tvSetMessageBoxHandler(note_message, NULL);
  tvSetBeepHandler(ignore_beep, NULL);
  while (scanf("%199s %199s", study, script) == 2) {
    message[0] = '\0';
    const int result = vcConvertScrToTstWz(study, script);
    for (char* byte = message; *byte != '\0'; ++byte) {
      if (*byte == '\r' || *byte == '\n') *byte = ' ';
    }
    printf("%d %s\n", result, message);
    remove_outputs(script);
  }
  return 0;
}
