// scanhost state: what is read of state files, damage by name, and the one key that is written.
#include <csignal>

#include "tests/support/scanhost.h"

namespace {

const std::string kStamp =
    std::to_string(1704067200000u % (1ull << 32));  // 2024-01-01 in Berlin + 1 h
const std::string kPump = record("Enb", "1") + record("TmpTime", kStamp) + record("ResetOld", "0") +
                          record("CMD", "1") + record("State", "2") + record("StartAlm", "0") +
                          record("StopAlm", "0") + record("AStSpOld", "1") +
                          record("HStSpOld", "0");

}  // namespace

TEST(State, IsShownWithStatesByNameAndStampsAsDates) {
  Host host;
  host.write("Drive1V2_PS_1_Pump.dat", kPump);
  const Host::Result shown = host.run("state show . --now 2024-01-21T01:00 --verify");
  EXPECT_EQ(shown.status, 0);
  for (const char* part :
       {"Drive1V2        PS          1_Pump", "may also be group 'PS_1', instance 'Pump'",
        "2               running", "2024-01-01T01:00:00.000+01:00, 20d ago  last start"})
    EXPECT_TRUE(has(shown.out, part));
  EXPECT_TRUE(has(host.run("state show . --now 2023-12-31T23:59:58Z").out, ", in 2s  last start"));
  EXPECT_TRUE(has(host.run("state list .").out, "1_Pump              ok\n"));
}

TEST(State, NamesEachDamage) {
  Host host;
  host.write("Drive1V2_G_A.dat", record("Enb", std::string(64, '1')) + record("State", "3") +
                                     record("CMD", "x\xff") + record("CMD", "1") +
                                     record("Off", "1") + record("", "") + "tail");
  host.write("What_G_A.dat", "");
  const Host::Result shown = host.run("state show .");
  EXPECT_EQ(shown.status, 0);
  for (const char* part :
       {"record 1: no NUL ends the value", "'3' of State is no state of the block",
        "of CMD is no whole number", "record 4: the key 'CMD' is there again",
        "record 5: the key 'Off' is unknown", "record 6 is empty", "a piece of 4 bytes",
        "the key 'TmpTime' is missing", "'What' is no block of the catalogue"})
    EXPECT_TRUE(has(shown.out, part));
  const Host::Result json = host.run("state show . --json --verify");
  EXPECT_EQ(json.status, 1);
  EXPECT_TRUE(has(json.out, "\"value\": \"x\xEF\xBF\xBD\""));
}

TEST(State, OneKeyIsWrittenAndFilesAreRemoved) {
  Host host;
  const std::string file = "s/Drive1V2_G_A.dat";
  std::filesystem::create_directory(host.directory() / "s");
  host.write(file, kPump + "tail");
  EXPECT_EQ(host.run("state set " + file + " 'State=start failed'").out, "State = 5\n");
  EXPECT_EQ(host.run("state set " + file + " TmpTime=2024-01-01T00:00Z").status, 0);
  std::string expected = kPump;
  expected[4 * 96 + 32] = '5';
  EXPECT_EQ(host.read(file), expected + "tail");
  for (const char* wrong : {"State=3", "State=runing", "AStSpOld=2147483648", "CMD=1x", "Enb=0",
                            "cmd=1", "CMD", "TmpTime=-1"})
    EXPECT_EQ(host.run("state set " + file + " " + wrong).status, 2) << wrong;
  EXPECT_EQ(host.read(file), expected + "tail");

  host.write("s/Scale_G_A.dat", "");
  host.write("p.toml",
             "[program]\nscan = \"10ms\"\nstate = \"s\"\n[signals]\nOne = { value = 1 }\n"
             "[[block]]\nname = \"A\"\ntype = \"Scale\"\n"
             "[outputs]\nOut = { from = \"One\", file = \"out\" }\n");
  Host running;
  running.start("run " + (host.directory() / "p.toml").string());
  ASSERT_TRUE(host.eventually("out", "1\n"));
  const Host::Result held = host.run("state set " + file + " CMD=0");
  EXPECT_EQ(held.status, 1);
  EXPECT_TRUE(has(held.err, "in use by another scanhost"));
  EXPECT_EQ(host.run("state reset --yes " + file).status, 1);
  running.stop(SIGTERM);

  EXPECT_EQ(host.run("state reset " + file + " </dev/null").status, 2);
  EXPECT_EQ(host.read(file), expected + "tail");
  EXPECT_EQ(host.run("state reset --yes " + file).out, "removed " + file + "\n");
  EXPECT_FALSE(std::filesystem::exists(host.directory() / file));
}
