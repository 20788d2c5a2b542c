-- What a person does in neovim, set up as docs/editors.md says, and what is to be seen then.
local function say(words) io.write(words, '\n') end

local function open(name)
  vim.cmd('edit ' .. vim.fn.fnameescape(name))
  say('--- ' .. name)
end

-- Once they are as wanted: what comes in between is of no interest.
local function problems(count, line)
  local wanted = function()
    local all = vim.diagnostic.get(0)
    return #all == count and (count == 0 or all[1].lnum + 1 == line)
  end
  if not vim.wait(10000, wanted, 5) then say('not ' .. count .. ' problems:') end
  for _, one in ipairs(vim.diagnostic.get(0)) do
    say(string.format('%d:%d %s', one.lnum + 1, one.col + 1, one.message))
  end
end

local function ask(method, line, column, more)
  local params = vim.tbl_extend('force', {
    textDocument = { uri = vim.uri_from_bufnr(0) },
    position = { line = line - 1, character = column - 1 },
    range = { start = { line = line - 1, character = column - 1 }, ['end'] = { line = line - 1, character = column - 1 } },
    context = { diagnostics = {} },
    options = { tabSize = 2, insertSpaces = true },
  }, more or {})
  for _, answer in pairs(vim.lsp.buf_request_sync(0, method, params, 10000) or {}) do
    return answer.error and { refused = answer.error.message } or answer.result
  end
end

local function fix(line, column, title)
  for _, action in ipairs(ask('textDocument/codeAction', line, column) or {}) do
    if action.title == title then
      say('does: ' .. title)
      return vim.lsp.util.apply_workspace_edit(action.edit, 'utf-16')
    end
  end
  say('there is no action ' .. title)
end

local function show()
  for _, line in ipairs(vim.api.nvim_buf_get_lines(0, 0, -1, false)) do say('| ' .. line) end
end

open('a log of 5 °.log')
problems(3, 8)
say(ask('textDocument/hover', 5, 100).contents.value)
vim.api.nvim_buf_set_text(0, 7, 0, 7, 0, { '', 'ü💡 ' })
problems(3, 9)
fix(9, 100, 'Write "FOCUS_VALUE" for "FOCUS_VALEU"')
problems(2, 9)
fix(9, 100, 'Mend this message')
problems(0)
say(vim.api.nvim_buf_get_lines(0, 8, 9, false)[1])
say(ask('textDocument/formatting', 1, 1).refused)

open('focus.msg')
vim.lsp.util.apply_text_edits(ask('textDocument/formatting', 1, 1), 0, 'utf-16')
show()
problems(0)
vim.api.nvim_buf_set_lines(0, 2, 3, false, { '  FOCUS_VALUE = 3.5x', '  ' })
problems(1, 3)
vim.api.nvim_buf_set_text(0, 2, 19, 2, 20, { '' })
problems(0)
vim.api.nvim_buf_set_lines(0, 1, 2, false, {})
for _, item in ipairs(ask('textDocument/completion', 3, 3)) do say('offers ' .. item.label .. ': ' .. item.detail) end
vim.lsp.buf_request_sync(0, 'workspace/executeCommand',
  { command = 'vekmsg.toLines', arguments = { vim.uri_from_bufnr(0) } }, 10000)
vim.wait(10000, function() return vim.api.nvim_buf_line_count(0) == 1 end, 5)
show()

open('latin1.log')
problems(2, 1)
vim.cmd('qall!')
