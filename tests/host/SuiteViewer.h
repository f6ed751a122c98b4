#pragma once
#include "ViewerFixture.h"

/// Opens the shared viewer before the first test of a suite and closes it after the last.
class SuiteViewer : public ViewerFixture
{
protected:
    static void SetUpTestSuite()
    {
        Open();
        ASSERT_TRUE(viewer->getMapNode());
    }
    static void TearDownTestSuite() { Close(); }
};
