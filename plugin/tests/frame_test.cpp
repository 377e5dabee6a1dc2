#include <gtest/gtest.h>

#include <thread>

#include "fake_host.h"
#include "plugin/host/cti.h"
#include "plugin/host/frame_report.h"

namespace {

const std::string kUtility13 = std::string(kAEGPUtilitySuite) + "/13";

TEST(Frames, NestPerThreadAndLeaveNothingBehind) {
  FakeHost host;
  EXPECT_TRUE(HasNoCTI());
  OpenFrame(host.pica(), eQuillon_AEGP_CommandHook, 7);
  CTI* outer = CurrentCTI();
  OpenFrame(host.pica(), eQuillon_AEGP_ImportFile, 7);
  CTI* inner = CurrentCTI();
  EXPECT_NE(inner, outer);
  EXPECT_EQ(inner->generalCall->event, eQuillon_AEGP_ImportFile);
  bool otherThreadHasFrame = true;
  std::thread([&] { otherThreadHasFrame = !HasNoCTI(); }).join();
  EXPECT_FALSE(otherThreadHasFrame);
  CloseFrame();
  EXPECT_EQ(CurrentCTI(), outer);
  CloseFrame();
  EXPECT_TRUE(HasNoCTI());
  try {
    CurrentCTI();
    FAIL() << "no frame must throw";
  } catch (A_Err err) {
    EXPECT_EQ(err, 512);
  }
}

TEST(Frames, AcquireEachSuiteOnceAndReleaseItWithTheFrame) {
  FakeHost host;
  {
    FrameScope frame(host.pica(), eQuillon_AEGP_CommandHook, 1);
    CTI* cti = CurrentCTI();
    const auto* first = cti->Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, 13);
    const auto* again = cti->Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, 13);
    cti->Suite<AEGP_UtilitySuite10>(kAEGPUtilitySuite, 10);  // another version, another slot
    EXPECT_EQ(first, again);
    EXPECT_EQ(host.acquired[kUtility13], 1);
    EXPECT_EQ(host.released[kUtility13], 0);
  }
  EXPECT_EQ(host.released[kUtility13], 1);
  EXPECT_EQ(host.released[std::string(kAEGPUtilitySuite) + "/10"], 1);
}

TEST(Frames, AMissingSuiteIsRecordedAndThrown) {
  FakeHost host;
  FrameScope frame(host.pica(), eQuillon_AEGP_CommandHook, 1);
  CTI* cti = CurrentCTI();
  try {
    cti->Suite<AEGP_LayerSuite13>(kAEGPLayerSuite, 13);
    FAIL() << "a missing suite must throw";
  } catch (A_Err err) {
    EXPECT_EQ(err, 13);
  }
  EXPECT_EQ(cti->FormatErrors(), "Code (A_Err_MISSING_SUITE) : Missing Suite Error\n");
  SuiteHandler noHost(nullptr);
  EXPECT_THROW(noHost.Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, 13), A_Err);
}

TEST(FrameReport, NamesWhatWasThrownOrRecorded) {
  FakeHost host;
  FrameScope frame(host.pica(), eQuillon_AEGP_CommandHook, 1);
  CTI* cti = CurrentCTI();
  A_Err code = 0;
  EXPECT_EQ(cti->FormatErrors(), "No Error");
  EXPECT_EQ(FormatFrameReport(cti, eQuillon_AEGP_CommandHook, 4, &code),
            "Error during event eQuillon_AEGP_CommandHook\nUnexpected error [PF_Err_OUT_OF_MEMORY]");
  EXPECT_EQ(code, 4);
  EXPECT_EQ(FormatFrameReport(cti, eQuillon_AEGP_ImportFile, 0, &code),
            "Error during event eQuillon_AEGP_ImportFile\nUnhandled error during event eQuillon_AEGP_ImportFile");
  EXPECT_EQ(code, 512);
  EXPECT_EQ(FormatFrameReport(nullptr, eQuillon_AEGP_CommandHook, 0, &code),
            "Error during event eQuillon_AEGP_CommandHook\nFailed to create CTI, probably out of memory.");
  EXPECT_EQ(code, 4);
  cti->AddError(2, "No item selected.");
  cti->AddError(0, "a note");
  EXPECT_EQ(FormatFrameReport(cti, eQuillon_AEGP_CommandHook, 1, &code),
            "Error during event eQuillon_AEGP_CommandHook\nCode (A_Err_STRUCT) : No item selected.\n"
            "Code (None) : a note\n");
  EXPECT_EQ(code, 2);  // a code of 0 does not count
  cti->errors.assign({{0, "only notes"}});
  FormatFrameReport(cti, eQuillon_AEGP_CommandHook, 1, &code);
  EXPECT_EQ(code, 512);
}

TEST(FrameReport, AHookShowsOneMessageAndReturnsTheCode) {
  FakeHost host;
  const A_Err result = RunInFrame(host.pica(), eQuillon_AEGP_CommandHook, 1, [](CTI* cti) {
    cti->AddError(41, "Sch\xC3\xB6n \\u00e9");
    throw A_Err(1);
  });
  EXPECT_EQ(result, 41);
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0],
            u"Error during event eQuillon_AEGP_CommandHook\nCode (Unkown Error Type) : Sch\u00F6n \u00E9\n");
  EXPECT_TRUE(HasNoCTI());
  EXPECT_EQ(RunInFrame(host.pica(), 9, 1, [](CTI*) { throw std::runtime_error("not an integer"); }), 512);
  EXPECT_EQ(RunInFrame(host.pica(), 9, 1, [](CTI*) {}), 0);
  EXPECT_EQ(host.reports.size(), 2u);
}

TEST(Progress, OpensOnFirstUseAndStopsAfterCancel) {
  FakeHost host;
  host.cancelAtUpdate = 1;
  {
    FrameScope frame(host.pica(), eQuillon_AEGP_CommandHook, 1);
    CTI* cti = CurrentCTI();
    cti->Progress(12.9);
    EXPECT_EQ(cti->GetAbortCode(), 0);
    cti->Progress(50.0);
    EXPECT_EQ(cti->GetAbortCode(), 517);
    cti->Progress(75.0);
    EXPECT_EQ(cti->GetAbortCode(), 517);
    ASSERT_EQ(host.progressTitles, std::vector<std::u16string>{u"Processing..."});
    EXPECT_EQ(host.progressCounts, (std::vector<A_long>{12, 50}));
    cti->ReportMessage(u"");
    EXPECT_TRUE(host.reports.empty());
    cti->ReportMessage(u"done");
    EXPECT_EQ(host.progressDisposals, 1);  // the dialog goes before the message
  }
  EXPECT_EQ(host.progressDisposals, 1);
}

TEST(Frames, AMessageCountsAsTellingOfTheErrorsBeforeIt) {
  FakeHost host;
  FrameScope frame(host.pica(), eQuillon_AEGP_CommandHook, 1);
  CTI* cti = CurrentCTI();
  cti->AddError(2, "a walk failed");
  cti->ReportMessage(u"Problem encountered with streams.");
  EXPECT_EQ(cti->errorsTold, 1u);
  cti->AddError(1, "Failed to create target file.");
  EXPECT_EQ(cti->errorsTold, 1u);  // this one the user has not heard of
}

TEST(Progress, ARefusedDialogLetsTheWorkGoOn) {
  FakeHost host;
  host.refuseProgressDialog = true;
  FrameScope frame(host.pica(), eQuillon_AEGP_CommandHook, 1);
  CTI* cti = CurrentCTI();
  cti->Progress(10.0);
  EXPECT_EQ(cti->GetAbortCode(), 0);
  EXPECT_TRUE(host.progressCounts.empty());
}

TEST(DisplayNames, FallBackForUnknownValues) {
  EXPECT_STREQ(EventName(44), "eQuillon_AEGP_UpdateMenuHook");
  EXPECT_STREQ(EventName(48), "eQuillon_AEGP_BitBlitThreadHook");
  EXPECT_STREQ(EventName(49), "Unkown AEGP Cmd type");
  EXPECT_STREQ(ErrorName(9999), "AEIO_Err_USE_DFLT_GETSIZES_FREESPACE");
  EXPECT_STREQ(ErrorName(7), "Unkown Error Type");
  EXPECT_STREQ(EffectCommandName(27), "PF_Cmd_RESERVED3");
  EXPECT_STREQ(EffectCommandName(28), "Unkown AE Cmd type");
}

}  // namespace
