/*
 * Plugin of qemu-user: counts the instructions that the program under test executes from one
 * sched_yield to the next. At getppid it prints how many such stretches there were, their sum and
 * the longest, and begins anew. The declarations stand in for QEMU's own header, of which there
 * is no package.
 */
#include <inttypes.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

typedef uint64_t plugin_id;
struct qemu_plugin_tb;
enum { ADD_U64 = 0 };

void qemu_plugin_register_vcpu_tb_trans_cb(plugin_id id,
                                           void (*callback)(plugin_id, struct qemu_plugin_tb*));
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb* block, int operation,
                                              void* counter, uint64_t number);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb* block);
void qemu_plugin_register_vcpu_syscall_cb(plugin_id id,
                                          void (*callback)(plugin_id, unsigned, int64_t, uint64_t,
                                                           uint64_t, uint64_t, uint64_t, uint64_t,
                                                           uint64_t, uint64_t, uint64_t));

#define VISIBLE __attribute__((visibility("default")))
VISIBLE extern int qemu_plugin_version;
VISIBLE int qemu_plugin_version = 1;

enum { SCHED_YIELD = 158, GETPPID = 64 }; /* of 32-bit ARM */

static uint64_t executed, begin, stretches, sum, longest;
static int counting;

static void translated(plugin_id id, struct qemu_plugin_tb* block) {
  (void)id;
  qemu_plugin_register_vcpu_tb_exec_inline(block, ADD_U64, &executed,
                                           qemu_plugin_tb_n_insns(block));
}

static void called(plugin_id id, unsigned cpu, int64_t number, uint64_t a, uint64_t b, uint64_t c,
                   uint64_t d, uint64_t e, uint64_t f, uint64_t g, uint64_t h) {
  (void)id, (void)cpu, (void)a, (void)b, (void)c, (void)d, (void)e, (void)f, (void)g, (void)h;
  if (number == SCHED_YIELD) {
    const uint64_t length = executed - begin;
    if (counting) {
      ++stretches;
      sum += length;
      if (length > longest) longest = length;
    }
    counting = !counting;
    begin = executed;
  } else if (number == GETPPID) {
    fprintf(stderr, "%" PRIu64 " %" PRIu64 " %" PRIu64 "\n", stretches, sum, longest);
    stretches = sum = longest = 0;
  }
}

VISIBLE int qemu_plugin_install(plugin_id id, const void* info, int count, char** arguments) {
  (void)info, (void)count, (void)arguments;
  qemu_plugin_register_vcpu_tb_trans_cb(id, translated);
  qemu_plugin_register_vcpu_syscall_cb(id, called);
  return 0;
}
