#include <quillcore.h>
#include <stdio.h>
#include <string.h>

static bool go_on(int32_t reference, int32_t progress) {
  return reference == 0 && progress >= 0;  // a host answers false to stop
}

int main(void) {
  const char text[] = "A cat, the Cat's hat, and a bobcat.";
  const int32_t size = (int32_t)strlen(text);
  QuillBlock block = NewBlock(size);
  if (block == NULL) return 1;
  memcpy(LockBlock(block), text, strlen(text));
  UnlockBlock(block);

  int32_t upper[26], lower[26];  // a mask that takes A to Z for a to z
  for (int i = 0; i < 26; ++i) upper[i] = 'A' + i, lower[i] = 'a' + i;
  const int32_t word[] = {'c', 'a', 't'}, breaks[] = {' ', ',', '.', '\''};

  int32_t end = size, caret = size;  // both move with the text
  const int32_t done = utf8_ReplaceStrAll(
      &block, 0, &end, word, 3, NULL,     // where, and what is sought
      "dog", 3, NULL,                     // what comes in its place
      upper, lower, 26, breaks, 4, 1, 0,  // in any case, whole words
      &caret, 0, go_on);
  if (done) printf("%.*s\n", (int)end, LockBlock(block));
  DisposeBlock(block);
  return !done;
}
