// Marionette opens no page of an extension, so this opens one.
browser.tabs.create({url: browser.runtime.getURL("page.html")});
