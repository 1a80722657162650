// What codes say that should never be opened or interpreted.
import assert from 'node:assert/strict';
import { after, before } from 'node:test';

import { check, openPage, startBrowser, startHost } from './host.mjs';

let browser;
before(async () => { browser = await startBrowser(); });
after(() => browser.close());

const kHostile = [
  'javascript:alert(1)', 'data:text/html,<script>alert(1)</script>', 'file:///etc/passwd',
  'HTTP:no-host here', 'https://', ' https://example.org', 'https://example.org/ and more',
  '<a href="https://example.org">here</a>', '<img src=x onerror="document.title=1">',
];

for (const text of kHostile) {
  check(`no link is made of ${text}`, async () => {
    const host = await startHost({ scene: { qrText: text } });
    try {
      const page = await openPage(browser, host);
      await page.check('#keep-looking');
      await page.waitForFunction((wanted) => [...document.querySelectorAll('#codes input')]
        .some((input) => input.value === wanted), text);
      assert.equal(await page.$$eval('#codes a, #codes img, #codes script', (all) => all.length), 0);
      assert.equal(await page.title(), 'doccam');
      await page.context().close();
    } finally {
      await host.stop();
    }
  });
}

check('an address in capitals is a link', async () => {
  const host = await startHost({ scene: { qrText: 'HTTPS://EXAMPLE.ORG/A?B=1' } });
  try {
    const page = await openPage(browser, host);
    await page.check('#keep-looking');
    assert.equal(await page.getAttribute('#codes a', 'href'), 'https://example.org/A?B=1');
    await page.context().close();
  } finally {
    await host.stop();
  }
});
