<% Response.ContentType = "application/octet-stream"
Response.Status = "202 Accepted"
Response.BinaryWrite Request.BinaryRead(Request.TotalBytes)
Response.End
Response.Write "never" %>
