// The host and the browser that the tests of one file share.
import assert from 'node:assert/strict';
import { after, before } from 'node:test';

import { openPage, startBrowser, startHost } from './host.mjs';

export let host;
export let browser;
export let page; // with shareWindow() only

function share({ withWindow }) {
  before(async () => {
    host = await startHost();
    browser = await startBrowser();
    if (withWindow) {
      page = await openPage(browser, host);
    }
  });
  after(async () => {
    await browser?.close();
    const { code, left } = await host.stop();
    assert.equal(code, 0, 'the server ends well');
    assert.deepEqual(left, [], 'no pages are left behind');
  });
}

export const shareHost = () => share({ withWindow: false });

// One window for all tests.
export const shareWindow = () => share({ withWindow: true });
