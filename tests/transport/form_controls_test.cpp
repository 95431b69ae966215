#include "transport/form_controls.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"
#include "transport/apartment.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

TEST(FormControls, HandsOutTheFirstFreeSlotFromOne) {
  Apartment apartment;
  frmControls& controls = apartment.controls;
  EXPECT_EQ(controls.GetFreeControl(), 1);
  EXPECT_EQ(controls.GetFreeControl(), 2);
  EXPECT_TRUE(controls.ReleaseControl(1));
  EXPECT_EQ(controls.GetFreeControl(), 1);
  EXPECT_EQ(controls.GetFreeControl(), 3);
  for (const std::int32_t slot : {1, 2, 3}) EXPECT_TRUE(controls.ReleaseControl(slot));
  for (int claims = 0; claims < 3; ++claims) controls.GetFreeControl();
  EXPECT_EQ(controls.SlotCount(), 3);  // those released in the order of their claims are used again too
}

TEST(FormControls, RaiseAnErrorForANumberWithoutASlot) {
  Apartment apartment;
  EXPECT_THROW(apartment.controls.StrResponse(1), RuntimeError);
  EXPECT_THROW(apartment.controls.BlnRequestReady(-1, true), RuntimeError);
}

TEST(FormControls, LogsForTheOwnerOfASlotAndLosesOtherLines) {
  const TemporaryDirectory logs;
  Apartment apartment;
  frmControls& controls = apartment.controls;
  controls.GetFreeControl();
  controls.WriteLog(1, "lost: no directory");
  controls.StrDebugLogPath(1, logs.path());
  controls.StrSessionID(1, "slot");
  controls.WriteLog(1, "kept", bytWarning);
  controls.WriteLog(2, "lost: no slot");
  controls.WriteLog(-1, "lost: no slot");
  EXPECT_EQ(logs.Read("slot.log").substr(19), " !!! <WARNING> kept\r\n");
}

}  // namespace
}  // namespace oxaqrycln::testing
