/* Runs a graph file: run_graph GRAPH. Prints what the run reports, as JSON. */
#include <stdio.h>

#include <kelvarin/kelvarin.h>

static int failed(kelvarin_error* error) {
  fprintf(stderr, "%s\n", kelvarin_error_message(error));
  kelvarin_error_free(error);
  return 1;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fputs("usage: run_graph GRAPH\n", stderr);
    return 2;
  }
  fprintf(stderr, "kelvarin %s\n", kelvarin_version());
  kelvarin_error* error = NULL;
  kelvarin_run run;
  if (kelvarin_run_open(argv[1], NULL, &run, &error) != KELVARIN_OK ||
      kelvarin_run_start(run, &error) != KELVARIN_OK ||
      kelvarin_run_wait(run, -1, &error) != KELVARIN_OK) {
    return failed(error);
  }
  char* json = NULL;
  if (kelvarin_run_result(run, &json, &error) != KELVARIN_OK) {
    return failed(error);
  }
  puts(json);
  kelvarin_free(json);
  return kelvarin_run_close(run) == KELVARIN_OK ? 0 : 1;
}
