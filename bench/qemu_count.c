/* A plugin of qemu's user emulation that counts the instructions that a program executes, and says
   the number at its end. Debian's packages have no header for plugins; what is used of version 1 of
   that interface is declared here.

     cc -shared -fPIC -o qemu_count.so qemu_count.c
     qemu-aarch64 -plugin ./qemu_count.so -d plugin PROGRAM */
#include <inttypes.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

struct qemu_plugin_tb;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };

void qemu_plugin_register_vcpu_tb_trans_cb(uint64_t id,
                                           void (*call)(uint64_t id, struct qemu_plugin_tb* block));
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb* block);
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb* block, enum qemu_plugin_op op,
                                              void* number, uint64_t added);
void qemu_plugin_register_atexit_cb(uint64_t id, void (*call)(uint64_t id, void* data), void* data);

int qemu_plugin_version = 1;

static uint64_t instructions;

/* Blocks are executed to their end, but for the few that a signal cuts short. */
static void count(uint64_t id, struct qemu_plugin_tb* block) {
  (void)id;
  qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &instructions,
                                           qemu_plugin_tb_n_insns(block));
}

static void report(uint64_t id, void* data) {
  (void)id;
  (void)data;
  fprintf(stderr, "instructions: %" PRIu64 "\n", instructions);
}

int qemu_plugin_install(uint64_t id, const void* machine, int count_of_arguments, char** arguments);
int qemu_plugin_install(uint64_t id, const void* machine, int count_of_arguments,
                        char** arguments) {
  (void)machine;
  (void)count_of_arguments;
  (void)arguments;
  qemu_plugin_register_vcpu_tb_trans_cb(id, count);
  qemu_plugin_register_atexit_cb(id, report, NULL);
  return 0;
}
